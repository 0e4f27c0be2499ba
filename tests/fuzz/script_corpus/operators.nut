// What the compiler must not see, beside what it may.
class C </ a = -1 /> { </ b = 2 /> c = 3; [4] = 5; static d = 6; function f() { return base } }
class D extends C { constructor() { base.constructor() } function f() { return !base.f() } }
enum E { x, y = -2 }
const K = 7;
function cpu_dump(dev, size, base_size)
{
    local v = 1, t = { a = 1 + 2 b = -3, "c": 4, ["d"] = @(x, y = 5) x - y };
    local f = function(...) return vargv.len() - 1;
    t.n <- v = t.a -= 2 * -v; t["a"] %= K + E.y
    v++
    ++v; t.b--; --t.c
    v = v < 3 && f in t ? t.a = 1 : ~v;
    switch (v) { case 1 + 1: v = 2; break; default: delete t.n }
    do v = clone t while (typeof v == "integer")
    foreach (k, x in t) if (x instanceof C) v = x; else ::r <- k
    compilestring("for (a < b -= c;;) {}");
}
