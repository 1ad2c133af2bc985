const f = (a, ...b) => `${a} and ${b.length}`; /* a comment */
let s = f("x", 1, /re[/]g/g.test("y")), o = {a: 1, "b": [2, , 3]};
label: for (const k of [1, 2]) { if (k > 1) break label; else continue; }
switch (s) { case 1: default: throw new Error("gone \u00e4"); }
