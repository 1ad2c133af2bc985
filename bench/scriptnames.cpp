#include "scriptnames.h"

#include <algorithm>
#include <iterator>

namespace
{

// clang-format off
constexpr const char *takenNames[] = {
    // the language's words
    "arguments", "await", "break", "case", "catch", "class", "const", "continue", "debugger", "default", "delete", "do", "else", "enum", "eval", "export",
    "extends", "false", "finally", "for", "function", "if", "implements", "import", "in", "instanceof", "interface", "let", "new", "null", "package", "private",
    "protected", "public", "return", "static", "super", "switch", "this", "throw", "true", "try", "typeof", "var", "void", "while", "with", "yield",
    // the engine's objects and functions
    "Array", "ArrayBuffer", "Atomics", "Boolean", "DataView", "Date", "Error", "EvalError", "Float32Array", "Float64Array", "Function", "Infinity", "Int16Array",
    "Int32Array", "Int8Array", "JSON", "Map", "Math", "NaN", "Number", "Object", "Promise", "Proxy", "RangeError", "ReferenceError", "Reflect", "RegExp", "Set",
    "SharedArrayBuffer", "String", "Symbol", "SyntaxError", "TypeError", "URIError", "Uint16Array", "Uint32Array", "Uint8Array", "Uint8ClampedArray", "WeakMap",
    "WeakSet", "console", "decodeURI", "decodeURIComponent", "encodeURI", "encodeURIComponent", "escape", "gc", "isFinite", "isNaN", "parseFloat", "parseInt",
    "print", "undefined", "unescape",
    // what scenario.js adds
    "AudioControl", "AudioFocus", "AudioPolicy", "AudioSettings", "Platform", "Sound", "cutPowerWhileSaving", "eraseSettings", "expect", "now", "powerOff",
    "powerOn", "say", "wait", "writeSettings",
};
// clang-format on

} // namespace

bool scriptnames::isTaken(const QString &name)
{
    return std::any_of(std::begin(takenNames), std::end(takenNames), [&name](const char *taken) { return name == QLatin1String(taken); });
}
