function f() { return f(); }
f();
