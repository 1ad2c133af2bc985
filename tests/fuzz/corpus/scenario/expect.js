expect(1);
expect([1, 2]).toEqual([1, 2]);
expect(() => { throw 1; }).toThrow();
expect(0.1 + 0.2).toBeCloseTo(0.3, 5);
expect("a").toContain("b");
