#include "scenarioplayer.h"
#include "timeline.h"

#include "virtualclock.h"

#include <program.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <cstdio>
#include <unistd.h>

namespace
{

using Frame = ScenarioResult::Frame;

constexpr int stuckStatus = 7;

/// What of the language works. The table in docs/qml.md says the same.
struct Feature
{
    const char *edition;
    const char *name;
    bool works;
    const char *body; // of a function that gives true where the feature works
};

constexpr Feature features[] = {
    {"2015", "`let` and `const`", true, "let a = 1; const b = 2; { let a = 5; } return a + b === 3;"},
    {"2015", "arrow functions", true, "return (a => a + 1)(1) === 2;"},
    {"2015", "classes", true, "class A { get b() { return 2; } static c() { return 3; } } class B extends A {} return new B().b + B.c() === 5;"},
    {"2015", "templates", true, "return `a${1}` === 'a1' && String.raw`\\n`.length === 2;"},
    {"2015", "destructuring", true, "const {a, b: [c], d = 3} = {a: 1, b: [2]}; const [e, ...f] = [1, 2]; return a + c + d + e + f[0] === 9;"},
    {"2015", "default and rest parameters", true, "return ((a, b = 2, ...c) => a + b + c.length)(1) === 3;"},
    {"2015", "`...` in lists and calls", true, "return [...[1, 2], 3].length === 3 && Math.max(...[1, 2]) === 2;"},
    {"2015", "getters and setters", true, "const o = {get a() { return 1; }, set a(v) { this.b = v; }}; o.a = 5; return o.a + o.b === 6;"},
    {"2015", "short and computed properties", true, "const a = 1; const o = {a, f() { return 2; }, ['x' + 1]: 3}; return o.a + o.f() + o.x1 === 6;"},
    {"2015", "generators", true, "function* f() { yield 1; yield* [2, 3]; } return [...f()].join() === '1,2,3';"},
    {"2015", "`for … of`", true, "let n = 0; for (const x of new Set([1, 2])) n += x; return n === 3;"},
    {"2015", "`Map`", true, "return new Map([[1, 2]]).get(1) === 2 && new WeakMap() instanceof WeakMap;"},
    {"2015", "`Set`", true, "return new Set([1, 1]).size === 1 && new WeakSet() instanceof WeakSet;"},
    {"2015", "`Symbol`", true, "const s = Symbol('a'); return ({[s]: 1})[s] === 1;"},
    {"2015", "`Proxy`", true, "return new Proxy({}, {get: () => 1}).a === 1 && Reflect.has({a: 1}, 'a');"},
    {"2015", "typed arrays", true, "return new Uint8Array([257])[0] === 1 && new DataView(new ArrayBuffer(8)).byteLength === 8;"},
    {"2015", "`Promise`", true, "let n = 0; Promise.resolve(2).then(x => { n = x; }); wait(0); return n === 2;"},
    {"2015", "modules", false, "import a from 'b'; return true;"},
    {"2016", "`**`", true, "let a = 2; a **= 3; return a === 8 && 2 ** 3 === 8;"},
    {"2016", "`includes` of lists", true, "return [1].includes(1);"},
    {"2017", "`Object.entries`", true, "return Object.entries({a: 1})[0][1] === 1;"},
    {"2017", "`Object.values`", true, "return Object.values({a: 1})[0] === 1;"},
    {"2017", "`padStart`", true, "return '7'.padStart(3, '0') === '007' && 'a'.padEnd(2) === 'a ';"},
    {"2017", "trailing commas in calls", true, "return ((a, b,) => a + b)(1, 2,) === 3;"},
    {"2017", "`async` and `await`", false, "async function f() { await 1; } return true;"},
    {"2018", "`...` in objects", false, "return ({...{a: 1}}).a === 1;"},
    {"2018", "rest properties", false, "const {a, ...b} = {a: 1, c: 2}; return b.c === 2;"},
    {"2018", "named groups", false, "return /(?<y>\\d)/.exec('5').groups.y === '5';"},
    {"2018", "lookbehind", false, "return /(?<=a)b/.test('ab') && !/(?<=a)b/.test('cb');"},
    {"2018", "`\\p{…}`", false, "return /\\p{L}/u.test('a');"},
    {"2018", "the flag `s`", false, "return /a.b/s.test('a\\nb');"},
    {"2018", "`finally` of a promise", false, "return typeof Promise.prototype.finally === 'function';"},
    {"2019", "`catch` without a name", false, "try { throw 1; } catch { return true; }"},
    {"2019", "`flat`", false, "return [[1]].flat()[0] === 1;"},
    {"2019", "`flatMap`", false, "return [1].flatMap(x => [x, x]).length === 2;"},
    {"2019", "`Object.fromEntries`", false, "return Object.fromEntries([['a', 1]]).a === 1;"},
    {"2019", "`trimStart`", false, "return ' a'.trimStart() === 'a';"},
    {"2020", "`??`", true, "return (null ?? 1) === 1 && (0 ?? 1) === 0;"},
    {"2020", "`?.`", false, "return null?.a === undefined;"},
    {"2020", "`BigInt`", false, "return 10n > 9n;"},
    {"2020", "`globalThis`", false, "return globalThis.Math === Math;"},
    {"2020", "`matchAll`", false, "return [...'aa'.matchAll(/a/g)].length === 2;"},
    {"2020", "`Promise.allSettled`", false, "return typeof Promise.allSettled === 'function';"},
    {"2020", "`import()`", false, "import('b'); return true;"},
    {"later", "`&&=`", false, "let a = 1; a &&= 2; return a === 2;"},
    {"later", "`replaceAll`", false, "return 'aa'.replaceAll('a', 'b') === 'bb';"},
    {"later", "`1_000`", false, "return 1_000 === 1000;"},
    {"later", "class fields", false, "class A { a = 1; } return new A().a === 1;"},
    {"later", "`at`", false, "return [1].at(-1) === 1;"},
    {"later", "`Object.hasOwn`", false, "return Object.hasOwn({a: 1}, 'a');"},
};

} // namespace

/// What a scenario's result tells: which checks there are, what ended it and where, and that its limits hold.
class BenchScenarioTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void uncheckedExpectations_data();
    void uncheckedExpectations();
    void checksStandInTheOrderOfTheirExpectations();
    void anErrorBeforeTheMatcherIsTheOnlyFailure();
    void mistakes_data();
    void mistakes();
    void syntaxErrors_data();
    void syntaxErrors();
    void whatStaysAllowed_data();
    void whatStaysAllowed();
    void stacks_data();
    void stacks();
    void longStacksAreShortened();
    void handlersCanBeDisconnected();
    void timeLimit_data();
    void timeLimit();
    void timeLimitOfARealWait();
    void nothingOfTheScenarioRunsAfterALimit();
    void memoryLimit_data();
    void memoryLimit();
    void stuckInsideTheEngine_data();
    void stuckInsideTheEngine();
    void noLimitWhileItHolds();
    void language_data();
    void language();
    void languageIsDocumented();

private:
    static ScenarioResult play(const QString &program, const ScenarioLimits &limits = {});
    static QString stackText(const QVector<Frame> &stack);
    static QString failuresOf(const ScenarioResult &result);
};

ScenarioResult BenchScenarioTest::play(const QString &program, const ScenarioLimits &limits)
{
    Timeline timeline;
    return ScenarioPlayer(timeline, limits).play(QStringLiteral("/scenarios/my scenario.js"), program);
}

/// "inner 3, outer 7, 9"
QString BenchScenarioTest::stackText(const QVector<Frame> &stack)
{
    QStringList texts;
    for (const Frame &frame : stack)
        texts += QStringLiteral("%1 %2").arg(frame.function).arg(frame.line).trimmed();
    return texts.join(QLatin1String(", "));
}

/// "3: expected 1, got 2", a line for each failed check.
QString BenchScenarioTest::failuresOf(const ScenarioResult &result)
{
    QStringList texts;
    for (const ScenarioResult::Check &check : result.checks) {
        if (!check.passed)
            texts += QString::number(check.line) + QLatin1String(": ") + check.cause;
    }
    return texts.join(QLatin1Char('\n'));
}

void BenchScenarioTest::uncheckedExpectations_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("failures");

    const auto row
        = [](const char *name, const char *program, const char *failures) { QTest::newRow(name) << QString::fromUtf8(program) << QString::fromUtf8(failures); };
    row("no matcher", "let x = 3;\nexpect(x == 3);", "2: nothing is checked: expect() needs a matcher, such as .toBe(value)");
    row("a matcher that is not called", "expect(1).toBe;", "1: nothing is checked: .toBe is not called");
    row("not without a matcher", "expect(1).not;", "1: nothing is checked: .not needs a matcher, such as .not.toBe(value)");
    row("a matcher behind not that is not called", "expect(1).not.toEqual;", "1: nothing is checked: .toEqual is not called");
    row("in a function",
        "function f() {\n  expect(1);\n}\nf();\nf();",
        "2: nothing is checked: expect() needs a matcher, such as .toBe(value)\n"
        "2: nothing is checked: expect() needs a matcher, such as .toBe(value)");
    row("an error comes later", "expect(1);\nexpect(2).toBe(2);\nnope();", "1: nothing is checked: expect() needs a matcher, such as .toBe(value)");
    row("a matcher that comes later", "const e = expect(1);\nexpect(2).toBe(2);\ne.toBe(1);", "");
    row("an unknown matcher whose error is caught", "try {\n  expect(1).toBeOne();\n} catch (error) {\n}", "2: nothing is checked: .toBeOne is not called");
}

void BenchScenarioTest::uncheckedExpectations()
{
    QFETCH(QString, program);
    QFETCH(QString, failures);
    const ScenarioResult result = play(program);
    QCOMPARE(failuresOf(result), failures);
    QCOMPARE(result.failures(), failures.isEmpty() ? 0 : failures.count(QLatin1Char('\n')) + 1);
}

void BenchScenarioTest::checksStandInTheOrderOfTheirExpectations()
{
    const ScenarioResult result = play(QStringLiteral("expect(1);\n"
                                                      "const later = expect(2);\n"
                                                      "expect(3).toBe(3);\n"
                                                      "later.toBe(2);\n"
                                                      "later.not.toBe(3);\n"
                                                      "expect(4).toBe;\n"));
    QStringList texts;
    for (const ScenarioResult::Check &check : result.checks)
        texts += QStringLiteral("%1 %2").arg(check.line).arg(check.passed ? QStringLiteral("ok") : QStringLiteral("failed"));
    QCOMPARE(texts.join(QLatin1String(", ")), QStringLiteral("1 failed, 2 ok, 2 ok, 3 ok, 6 failed"));
    QCOMPARE(result.checks.first().text, QStringLiteral("expect(1)"));
}

void BenchScenarioTest::anErrorBeforeTheMatcherIsTheOnlyFailure()
{
    const char *const programs[] = {
        "expect(1).toBe(nope());",
        "expect(1).toBe(\n  nope());",
        "expect(1).toBeOne();",
        "function wanted() {\n  expect(2).toBe(2);\n  return nope();\n}\nexpect(1).toBe(wanted());",
    };
    for (const char *const program : programs) {
        const ScenarioResult result = play(QString::fromLatin1(program));
        QVERIFY(!result.error.isEmpty());
        QCOMPARE(failuresOf(result), QString());
    }
}

void BenchScenarioTest::mistakes_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *program, int line, const char *error) {
        QTest::newRow(QByteArray(program).simplified().constData()) << QString::fromUtf8(program) << line << QString::fromUtf8(error);
    };
    row("\nexpect();", 2, "TypeError: expect(actual): actual is missing");
    row("expect(1, 1);", 1, "TypeError: expect(actual) takes one argument, not 2");
    row("expect(undefined).toBe();", 1, "TypeError: toBe(value): value is missing");
    row("expect(1).toBe(1, 0.5);", 1, "TypeError: toBe(value) takes one argument, not 2");
    row("expect([1]).toEqual();", 1, "TypeError: toEqual(value): value is missing");
    row("expect(undefined).not.toBeCloseTo(1);", 1, "TypeError: toBeCloseTo() compares numbers, not undefined");
    row("expect(1).toBeCloseTo('1');", 1, "TypeError: toBeCloseTo() needs a finite number to compare with, not \"1\"");
    row("expect(1).not.toBeCloseTo(NaN);", 1, "TypeError: toBeCloseTo() needs a finite number to compare with, not NaN");
    row("expect(1).toBeCloseTo(2, -1);", 1, "TypeError: toBeCloseTo() needs a distance from 0, not -1");
    row("expect(1).not.toBeCloseTo(1, NaN);", 1, "TypeError: toBeCloseTo() needs a distance from 0, not NaN");
    row("expect(1).toBeCloseTo(2, Infinity);", 1, "TypeError: toBeCloseTo() needs a distance from 0, not Infinity");
    row("expect('7').toBeGreaterThan(6);", 1, "TypeError: toBeGreaterThan() compares numbers, not \"7\"");
    row("expect(NaN).not.toBeLessThan(6);", 1, "TypeError: toBeLessThan() compares numbers, not NaN");
    row("expect(7).toBeGreaterThan();", 1, "TypeError: toBeGreaterThan(value): value is missing");
    row("expect(7).not.toBeLessThan(NaN);", 1, "TypeError: toBeLessThan() needs a finite number to compare with, not NaN");
    row("expect(7).toBeLessThan(Infinity);", 1, "TypeError: toBeLessThan() needs a finite number to compare with, not Infinity");
    row("expect(12).not.toContain(1);", 1, "TypeError: toContain() looks into a text or a list, not 12");
    row("expect(null).not.toContain(1);", 1, "TypeError: toContain() looks into a text or a list, not null");
    row("expect({a: 1}).not.toContain(1);", 1, "TypeError: toContain() looks into a text or a list, not {a: 1}");
    row("expect('a3').toContain(3);", 1, "TypeError: toContain() looks for a text in a text, not for 3");
    row("expect('a').toContain('');", 1, "TypeError: toContain() looks for a text in a text, not for an empty one");

    row("\nAudioControl.setStreamVolume(AudioControl.Main, 'S+FilePlayer_APP');",
        2,
        "TypeError: AudioControl.setStreamVolume(tag, name, volume): volume is missing");
    row("AudioControl.setStreamVolume();", 1, "TypeError: AudioControl.setStreamVolume(tag, name, volume): tag, name and volume are missing");
    row("AudioPolicy.setVolume(0, 10);", 1, "TypeError: AudioPolicy.setVolume(type, volume, save): save is missing");
    row("AudioControl.isMute(true);", 1, "TypeError: AudioControl.isMute() takes no argument, not 1");
    row("AudioControl.setMasterVolume(10, 20);", 1, "TypeError: AudioControl.setMasterVolume(volume) takes one argument, not 2");
    row("Platform.trackVolume('main');", 1, "TypeError: Platform.trackVolume(track, source): source is missing");
    row("AudioSettings.data('a', 'b', 1, 2);", 1, "TypeError: AudioSettings.data(group, key, defaultValue) takes 3 arguments, not 4");
    row("wait();", 1, "TypeError: wait(milliseconds): milliseconds is missing");
    row("say();", 1, "TypeError: say(text): text is missing");
    row("powerOn(true);", 1, "TypeError: powerOn() takes no argument, not 1");
    row("new AudioFocus({clientId: 'a'}).request(4);", 1, "TypeError: AudioFocus.request() takes no argument, not 1");

    row("Sound.above();", 1, "TypeError: Sound.above(source, other): source is missing");
    row("Sound.above('a', 'b', 'c');", 1, "TypeError: Sound.above(source, other) takes 2 arguments, not 3");
    row("Sound.above('a', 7);", 1, "TypeError: Sound.above() takes names of sources, not 7");
    row("Sound.above('');", 1, "TypeError: Sound.above() takes names of sources, not an empty one");
    row("Sound.below('a');", 1, "ReferenceError: Sound has no function or property below");
    row("Sound.above = null;", 1, "TypeError: Sound.above cannot be set");
    row("wait(1000);\nSound.above('S+FilePlayer');", 2, "Error: S+FilePlayer and anything else have not sounded together for 400 ms");
    row("AudioControl.setOutputSource(AudioControl.Main, 'S+FilePlayer_APP');\nwait(399);\nSound.above('S+FilePlayer', 'S+FilePlayer');",
        3,
        "Error: S+FilePlayer and S+FilePlayer have not sounded together for 400 ms");

    row("nope();", 1, "ReferenceError: nope is not defined");
    row("\n\nthrow {cause: 7};", 3, "thrown: {cause: 7}");
    row("\nthrow 'enough';", 2, "thrown: \"enough\"");
    row("function f() {\n  throw null;\n}\n\nf();", 2, "thrown: null");
    row("try {\n  throw 1;\n} catch (error) {\n}\nif (now() === 0)\n  throw 2;", 6, "thrown: 2");
    row("try {\n  throw [1];\n} finally {\n  say('x');\n}", 2, "thrown: [1]");
    row("function deep() {\n  return deep() + 1;\n}\n\ndeep();", 2, "RangeError: Maximum call stack size exceeded.");
    row("const nested = {\n  get it() { return this.it; },\n};\nnested.it;", 2, "RangeError: Maximum call stack size exceeded.");
    row("function deep() {\n  [1].forEach(deep);\n}\ndeep();", 2, "RangeError: Maximum call stack size exceeded.");

    row("powerOn();\nAudioPolicy.volumesChanged.connect(() => {\n  nope();\n});\nAudioPolicy.setVolume(0, 3, true);", 3, "ReferenceError: nope is not defined");
    row("AudioPolicy.mutedChanged.connect(function () {\n  throw {at: 1};\n});\nAudioPolicy.setAudioMute(true, 4);\nwait(1000);", 2, "thrown: {at: 1}");
    row("const first = new AudioFocus({clientId: 'a', onFocusChanged: change => {\n  change.nope();\n}});\n"
        "const second = new AudioFocus({clientId: 'b'});\nfirst.request();\nsecond.request();",
        2,
        "TypeError: Property 'nope' of object -1 is not a function");
}

void BenchScenarioTest::mistakes()
{
    QFETCH(QString, program);
    QFETCH(int, line);
    QFETCH(QString, error);
    const ScenarioResult result = play(program);
    QCOMPARE(result.error, error);
    QCOMPARE(result.errorLine, line);
}

void BenchScenarioTest::syntaxErrors_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const char *program, int line, const char *error) {
        QTest::newRow(name) << QString::fromUtf8(program) << line << QString::fromUtf8(error);
    };
    row("one line, a bracket open", "expect(1", 1, "SyntaxError: the file ends before the ( of line 1 is closed");
    row("a block open", "if (true) {\n  now();\n\n\n", 2, "SyntaxError: the file ends before the { of line 1 is closed");
    row("a loop's head open", "for (;;", 1, "SyntaxError: the file ends before the ( of line 1 is closed");
    row("a value missing at the end", "let x =\n\n// nothing\n", 1, "SyntaxError: the file ends in the middle of a statement");
    row("a keyword at the end", "function", 1, "SyntaxError: the file ends in the middle of a statement");
    row("a bracket too many", "now();\n}\nnow();", 2, "SyntaxError: this } closes nothing");
    row("brackets crossed", "now();\nexpect([1);\n", 2, "SyntaxError: ) comes before the [ of line 2 is closed");
    row("a text without its end", "now();\nsay('x);\nnow();", 2, "SyntaxError: the text that begins with ' does not end on its line");
    row("a template without its end", "now();\nsay(`x);\nnow();", 2, "SyntaxError: the text that begins with ` does not end");
    row("a comment without its end", "now();\n/* x\nnow();", 2, "SyntaxError: the comment that begins with /* does not end");
    row("in the middle", "say('x');\nwait(;\nnow();", 2, "SyntaxError: Expected token `)'");
    row("on the last line", "say('x');\nwait(;", 2, "SyntaxError: Expected token `)'");
    row("on the last line, which is ended", "say('x');\nwait(;\n", 2, "SyntaxError: Expected token `)'");
    row("behind a return", "return;\nwait(;\n", 2, "SyntaxError: Expected token `)'");
    row("a return, and a block open", "if (true) {\n  return;\n", 2, "SyntaxError: the file ends before the { of line 1 is closed");
    row("behind lines that end with CR LF", "say('x');\r\nwait(;\r\n", 2, "SyntaxError: Expected token `)'");
    row("behind a byte order mark", "\xEF\xBB\xBFwait(;", 1, "SyntaxError: Expected token `)'");
    row("behind a line for the shell", "#!/usr/bin/env bench\nwait(;", 2, "SyntaxError: Expected token `)'");
    row("declared twice", "let x = 1;\nlet x = 2;", 2, "SyntaxError: Identifier x has already been declared");
    row("a break outside", "now();\nbreak;", 2, "SyntaxError: Break outside of loop");
    row("it closes the scenario's own function", "});\n(function(){", 1, "SyntaxError: this } closes nothing");
}

void BenchScenarioTest::syntaxErrors()
{
    mistakes();
}

void BenchScenarioTest::whatStaysAllowed_data()
{
    QTest::addColumn<QString>("program");

    const auto row = [](const char *name, const char *program) { QTest::newRow(name) << QString::fromUtf8(program); };
    row("return", "expect(1).toBe(1);\nreturn;\nnope();");
    row("no line end behind a comment", "expect(1).toBe(1); // good");
    row("a line for the shell", "#!/usr/bin/env bench\nexpect(1).toBe(1);");
    row("a byte order mark",
        "\xEF\xBB\xBF"
        "expect(1).toBe(1);");
    row("lines that end with CR LF", "expect(1)\r\n  .toBe(1);\r\n");
    row("strict", "'use strict';\nexpect((function () { return this; })()).toBe(undefined);");
    row("while", "let n = 0;\nwhile (n < 3) ++n;\nexpect(n).toBe(3);");
    row("do", "let n = 0;\ndo ++n; while (n < 3)\nexpect(n).toBe(3);");
    row("for", "let n = 0;\nfor (let i = 0; i < 3; ++i) n += i;\nexpect(n).toBe(3);");
    row("for without a condition", "let n = 0;\nfor (;;) if (++n === 3) break;\nexpect(n).toBe(3);");
    row("for with a comment for a condition", "let n = 0;\nfor (; /* ever */;) if (++n === 3) break;\nexpect(n).toBe(3);");
    row("for with a function in its head", "let n = 0;\nfor (let f = function () { n++; return 1; }; n < 3;) f();\nexpect(n).toBe(3);");
    row("for in and of", "let n = 0;\nfor (const i of [1, 2]) n += i;\nfor (const i in {a: 1}) n++;\nexpect(n).toBe(4);");
    row("members that are called like keywords",
        "const o = {while(x) { return x; }, throw: x => x, for: x => x, if: 1};\nexpect(o.while(1) + o.throw(2) + o.for(3)).toBe(6);");
    row("keywords in texts, comments and regular expressions",
        "expect(\"while (x) throw y\" + 'for (;;' + `while (${`for (;;${1}`} throw ` + /[/]while (x)/.source).toContain('while (for (;;1 throw [');\n"
        "// while (\n/* for (;;) throw */");
    row("division", "const a = 8, g = 2;\nexpect(a / 2 / g + (a) / 2 / g).toBe(4);");
    row("a regular expression behind a condition", "let n = 0;\nif (true) /while (x)/.test('while x') ? n = 1 : n = 2;\nexpect(n).toBe(1);");
    row("throw and catch", "let n = 0;\ntry { throw 1; } catch (e) { n = e; }\nexpect(n).toBe(1);");
    row("throw a comma expression", "let n = 0;\ntry { throw 1, 2; } catch (e) { n = e; }\nexpect(n).toBe(2);");
    row("throw of a generator", "function* f() { try { yield 1; } catch (e) { yield e; } }\nconst g = f();\ng.next();\nexpect(g.throw(3).value).toBe(3);");
    row("undefined where it is wanted", "expect(undefined).toBe(undefined);");
    row("an error that is caught", "let e;\ntry { AudioControl.isMute(1); } catch (error) { e = error; }\nexpect(e instanceof TypeError).toBe(true);");
}

void BenchScenarioTest::whatStaysAllowed()
{
    QFETCH(QString, program);
    const ScenarioResult result = play(program);
    QCOMPARE(result.error, QString());
    QCOMPARE(failuresOf(result), QString());
    QCOMPARE(result.checks.size(), 1);
}

void BenchScenarioTest::stacks_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("checkStack");
    QTest::addColumn<QString>("errorStack");

    const auto row = [](const char *name, const char *program, const char *checkStack, const char *errorStack) {
        QTest::newRow(name) << QString::fromUtf8(program) << QString::fromUtf8(checkStack) << QString::fromUtf8(errorStack);
    };
    row("a failure outside any function", "\nexpect(1).toBe(2);", "2", "");
    row("a failure in a helper", "function muted() {\n  expect(1).toBe(2);\n}\nfunction drive() {\n  muted();\n}\n\ndrive();", "muted 2, drive 5, 8", "");
    row("a failure in a function without a name", "[1].forEach(() => {\n  expect(1).toBe(2);\n});", "(anonymous) 2, 1", "");
    row("an expectation without a matcher", "function f() {\n  expect(1);\n}\nf();", "f 2, 4", "");
    row("an error in a helper", "function f() {\n  nope();\n}\n\nf();", "", "f 2, 5");
    row("a mistaken call in a helper", "const f = () => {\n  AudioControl.setMute();\n};\nf();", "", "f 2, 4");
    row("something thrown in a helper", "function f() {\n  throw 7;\n}\n\nf();", "", "f 2, 5");
    row("an error in a handler",
        "function told() {\n  nope();\n}\nnew AudioFocus({clientId: 'a', onFocusChanged: told}).request();\n"
        "new AudioFocus({clientId: 'b'}).request();",
        "",
        "told 2, 5");
    row("a passed check", "expect(1).toBe(1);", "", "");
}

void BenchScenarioTest::stacks()
{
    QFETCH(QString, program);
    QFETCH(QString, checkStack);
    QFETCH(QString, errorStack);
    const ScenarioResult result = play(program);
    QCOMPARE(result.checks.isEmpty() ? QString() : stackText(result.checks.first().stack), checkStack);
    QCOMPARE(stackText(result.errorStack), errorStack);
}

void BenchScenarioTest::longStacksAreShortened()
{
    const ScenarioResult result
        = play(QStringLiteral("function deep(n) {\n  return n ? deep(n - 1) : nope();\n}\nfunction begin() {\n  deep(1226);\n}\nbegin();"));
    QCOMPARE(stackText(result.errorStack),
             QStringLiteral("deep 2, deep 2, deep 2, deep 2, deep 2, deep 2, deep 2, deep 2, "
                            "\u2026 1,217 more 0, deep 2, deep 2, begin 5, 7"));
}

void BenchScenarioTest::handlersCanBeDisconnected()
{
    const ScenarioResult result = play(QStringLiteral("let heard = 0;\n"
                                                      "const hear = () => ++heard;\n"
                                                      "powerOn();\n"
                                                      "AudioPolicy.mutedChanged.connect(hear);\n"
                                                      "AudioPolicy.setAudioMute(true, 4);\n"
                                                      "wait(1000);\n"
                                                      "const heardBefore = heard;\n"
                                                      "AudioPolicy.mutedChanged.disconnect(hear);\n"
                                                      "AudioPolicy.setAudioMute(true, 4);\n"
                                                      "wait(1000);\n"
                                                      "expect(heardBefore > 0).toBe(true);\n"
                                                      "expect(heard).toBe(heardBefore);"));
    QCOMPARE(result.error, QString());
    QCOMPARE(failuresOf(result), QString());
}

void BenchScenarioTest::timeLimit_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("stack");

    const auto row
        = [](const char *name, const char *program, const char *stack) { QTest::newRow(name) << QString::fromUtf8(program) << QString::fromUtf8(stack); };
    row("an empty loop", "now();\n\nwhile (true) {}", "3");
    row("a loop that only counts", "now();\nlet i = 0;\nwhile (true)\n  i++;", "3");
    row("do", "now();\nlet i = 0;\ndo {\n  i++;\n} while (i !== -1);", "5");
    row("for without a condition", "now();\n\nfor (;;) {\n}", "3");
    row("for with a condition", "now();\n\nfor (let i = 0; i > -1; i++) {\n}", "3");
    row("a loop around a call", "while (true) {\n\n  now();\n}", nullptr);
    row("a loop that waits for the car", "while (!AudioPolicy.muted)\n  wait(1);", nullptr);
    row("in functions", "function spin() {\n  now();\n\n  for (;;);\n}\nfunction drive() {\n  spin();\n}\n\ndrive();", "spin 4, drive 7, 10");
    row("a function called often", "function add(a, b) {\n  return a + b;\n}\nlet i = 0;\nwhile (true) {\n  i = add(i, 1);\n}", nullptr);
    row("in a handler",
        "function told() {\n\n  while (true) {}\n}\nnew AudioFocus({clientId: 'a', onFocusChanged: told}).request();\n"
        "new AudioFocus({clientId: 'b'}).request();",
        "told 3, 6");
    row("a callback of the engine", "now();\n[1].forEach(() => {\n  while (true) {}\n});", "(anonymous) 3, 2");
    row("a generator", "function* all() {\n  while (true)\n    yield 1;\n}\n\nfor (const x of all()) ;", nullptr);
    row("a week of timers",
        "powerOn();\nAudioPolicy.mutedChanged.connect(() => AudioPolicy.setAudioMute(true, 1));\n"
        "AudioPolicy.setAudioMute(true, 1);\nwhile (true)\n  wait(604800000);",
        nullptr);
    row("caught and done again", "while (true) {\n  try {\n    while (true) {}\n  } catch (error) {\n  } finally {\n  }\n}", "3");
}

void BenchScenarioTest::timeLimit()
{
    QFETCH(QString, program);
    QFETCH(QString, stack);
    ScenarioLimits limits;
    limits.milliseconds = 300;
    QElapsedTimer clock;
    clock.start();
    const ScenarioResult result = play(program, limits);
    QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(result.error, QStringLiteral("did not end within 0.3 s"));
    QVERIFY(!result.succeeded());
    QVERIFY2(result.errorLine >= 1 && result.errorLine <= program.count(QLatin1Char('\n')) + 1, qPrintable(QString::number(result.errorLine)));
    QVERIFY(!result.errorStack.isEmpty());
    QCOMPARE(result.errorStack.first().line, result.errorLine);
    // Without a wanted stack the place differs from run to run.
    if (!stack.isNull())
        QCOMPARE(stackText(result.errorStack), stack);
}

/// In a process of its own, since this one's time is virtual.
void BenchScenarioTest::timeLimitOfARealWait()
{
    QProcess process;
    program::start(process, program::commandLine(QCoreApplication::applicationFilePath(), {QStringLiteral("--real-wait")}));
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QVERIFY2(process.readAllStandardOutput().endsWith("did not end within 0.3 s, line 2\n"), "the wait was not ended");
}

void BenchScenarioTest::nothingOfTheScenarioRunsAfterALimit()
{
    ScenarioLimits limits;
    limits.milliseconds = 200;
    const ScenarioResult result = play(QStringLiteral("expect(1);\n"
                                                      "expect(1).toBe(1);\n"
                                                      "try {\n"
                                                      "  expect(2).toBe((() => { while (true) {} })());\n"
                                                      "} catch (error) {\n"
                                                      "  expect(3).toBe(3);\n"
                                                      "} finally {\n"
                                                      "  expect(4).toBe(4);\n"
                                                      "}\n"
                                                      "expect(5).toBe(5);"),
                                       limits);
    QCOMPARE(result.checks.size(), 2);
    QCOMPARE(failuresOf(result), QStringLiteral("1: nothing is checked: expect() needs a matcher, such as .toBe(value)"));
    QCOMPARE(result.errorLine, 4);
}

void BenchScenarioTest::memoryLimit_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<int>("loopLine");

    QTest::newRow("a list that grows") << QStringLiteral("const all = [];\nwhile (true)\n  all.push({a: all.length, b: [1, 2, 3]});") << 2;
    QTest::newRow("a text that grows") << QStringLiteral("let text = 'x';\nconst all = [];\nwhile (true) {\n  all.push(text.repeat(1000000));\n}") << 3;
}

void BenchScenarioTest::memoryLimit()
{
    QFETCH(QString, program);
    QFETCH(int, loopLine);
    ScenarioLimits limits;
    limits.bytes = 400LL * 1024 * 1024;
    const ScenarioResult result = play(program, limits);
    QCOMPARE(result.error, QStringLiteral("needs more than 400 MB of memory"));
    // Each loop is two lines long.
    QVERIFY2(result.errorLine == loopLine || result.errorLine == loopLine + 1, qPrintable(QString::number(result.errorLine)));
}

void BenchScenarioTest::stuckInsideTheEngine_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QByteArray>("output");

    // On 32 bits it is too much for any process, as in the next row.
    if (sizeof(void *) > 4)
        QTest::newRow("a text of gigabytes") << QStringLiteral("--huge-text") << QByteArray("needs more than 400 MB of memory, line 2, 1 check\n");
#ifndef __SANITIZE_ADDRESS__ // which ends the process itself
    QTest::newRow("a text longer than any") << QStringLiteral("--longest-text")
                                            << QByteArray("needs more memory for one value than there is, line 2, 1 check\n");
#endif
    QTest::newRow("a list that is sorted") << QStringLiteral("--huge-sort") << QByteArray("did not end within 0.3 s, line 4, 1 check\n");
}

void BenchScenarioTest::stuckInsideTheEngine()
{
    QFETCH(QString, argument);
    QFETCH(QByteArray, output);
    QProcess process;
    program::start(process, program::commandLine(QCoreApplication::applicationFilePath(), {argument}));
    QVERIFY(process.waitForFinished());
    const QByteArray written = process.readAllStandardOutput();
    QVERIFY2(written.endsWith(output), written.constData());
    QCOMPARE(process.exitCode(), stuckStatus);
}

void BenchScenarioTest::noLimitWhileItHolds()
{
    ScenarioLimits limits;
    limits.milliseconds = 60000;
    limits.bytes = 4LL * 1024 * 1024 * 1024;
    const ScenarioResult result = play(QStringLiteral("for (let i = 0; i < 1000000; ++i) ;\nexpect(1).toBe(1);"), limits);
    QVERIFY2(result.succeeded(), qPrintable(result.error));
}

void BenchScenarioTest::language_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<bool>("works");
    for (const Feature &feature : features)
        QTest::addRow("%s, %s", feature.edition, feature.name) << QString::fromUtf8(feature.body) << feature.works;
}

void BenchScenarioTest::language()
{
    QFETCH(QString, body);
    QFETCH(bool, works);
    const ScenarioResult result = play(QStringLiteral("expect((() => { %1 })()).toBe(true);").arg(body));
    QVERIFY2(result.succeeded() == works, qPrintable(result.error + failuresOf(result)));
}

void BenchScenarioTest::languageIsDocumented()
{
    QFile document(QStringLiteral(QML_DOCUMENT));
    QVERIFY(document.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(document.readAll());
    QStringList documented;
    static const QRegularExpression tableRow(QStringLiteral("^\\| (\\d{4}|later) \\| (.*) \\| (.*) \\|$"), QRegularExpression::MultilineOption);
    QRegularExpressionMatchIterator matches = tableRow.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        for (const bool works : {true, false}) {
            const QStringList names = match.captured(works ? 2 : 3).split(QStringLiteral(", "), Qt::SkipEmptyParts);
            for (const QString &name : names)
                documented += QStringLiteral("%1: %2: %3").arg(match.captured(1), name, works ? QStringLiteral("works") : QStringLiteral("does not"));
        }
    }

    QStringList tried;
    for (const Feature &feature : features)
        tried
            += QStringLiteral("%1: %2: %3")
                   .arg(QLatin1String(feature.edition), QString::fromUtf8(feature.name), feature.works ? QStringLiteral("works") : QStringLiteral("does not"));
    tried.sort();
    documented.sort();
    QCOMPARE(documented, tried);
}

namespace
{

/// Plays one scenario as a program of its own, and prints what the limit said.
int playAlone(const QString &program, const ScenarioLimits &limits)
{
    Timeline timeline;
    const ScenarioResult result = ScenarioPlayer(timeline, limits).play(QStringLiteral("scenario.js"), program);
    std::printf("%s, line %d\n", qPrintable(result.error), result.errorLine);
    return 0;
}

ScenarioLimits limitsThatGiveUp()
{
    ScenarioLimits limits;
    limits.onStuck = [](const ScenarioResult &result) {
        std::printf("%s, line %d, %d check\n", qPrintable(result.error), result.errorLine, int(result.checks.size()));
        std::fflush(stdout);
        _exit(stuckStatus);
    };
    return limits;
}

} // namespace

int main(int argc, char **argv)
{
    const QString argument = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (argument != QLatin1String("--real-wait"))
        simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    ScenarioLimits limits = limitsThatGiveUp();
    constexpr qint64 shortTime = 300;
    constexpr qint64 littleMemory = 400LL * 1024 * 1024;
    if (argument == QLatin1String("--real-wait")) {
        limits.milliseconds = shortTime;
        return playAlone(QStringLiteral("try {\n  wait(60000);\n} finally {\n  wait(60000);\n}"), limits);
    }
    if (argument == QLatin1String("--huge-text")) {
        limits.bytes = littleMemory;
        return playAlone(QStringLiteral("expect(1).toBe(1);\n'x'.repeat(1000000000).length;"), limits);
    }
    if (argument == QLatin1String("--longest-text"))
        return playAlone(QStringLiteral("expect(1).toBe(1);\n'x'.repeat(2000000000).length;"), limits);
    if (argument == QLatin1String("--huge-sort")) {
        limits.milliseconds = shortTime;
        return playAlone(QStringLiteral("expect(1).toBe(1);\nconst list = [];\nlist.length = 100000000;\nlist.fill(1).sort();"), limits);
    }
    BenchScenarioTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_benchscenario.moc"
