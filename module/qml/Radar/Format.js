.pragma library

// Texts of numbers as the pages show them.

// Up to `digits` significant digits, without trailing zeros.
function number(value, digits) {
    if (value === undefined || value === null || isNaN(value))
        return "–"
    return String(Number(Number(value).toPrecision(digits || 6)))
}

// The device's range of a setting, or nothing while it is unbounded (no
// board has told its limits yet).
function range(min, max) {
    var unboundedWhole = min === 0 && max === 4294967295
    var unboundedFloat = Math.abs(min) > 1e37 || Math.abs(max) > 1e37
    if (min === undefined || unboundedWhole || unboundedFloat)
        return ""
    return "[" + number(min, 4) + " – " + number(max, 4) + "]"
}

function frequency(hz) {
    if (!hz)
        return "–"
    if (hz >= 1e9)
        return number(hz / 1e9, 6) + " GHz"
    if (hz >= 1e6)
        return number(hz / 1e6, 6) + " MHz"
    if (hz >= 1e3)
        return number(hz / 1e3, 6) + " kHz"
    return number(hz, 6) + " Hz"
}

// A band of two frequencies in one unit: "60.25–61.75 GHz".
function band(lowHz, highHz) {
    if (!lowHz || !highHz)
        return "–"
    return number(lowHz / 1e9, 5) + "–" + number(highHz / 1e9, 5) + " GHz"
}

function seconds(s) {
    if (!s)
        return "–"
    if (s < 1e-3)
        return number(s * 1e6, 5) + " µs"
    if (s < 1)
        return number(s * 1e3, 5) + " ms"
    return number(s, 5) + " s"
}

// A local file path from a file dialog's URL.
function localPath(url) {
    var text = url.toString()
    if (text.indexOf("file://") === 0)
        text = text.substring(7)
    return decodeURIComponent(text)
}

// The folder URL of a local file path.
function folderUrl(path) {
    var slash = path.lastIndexOf("/")
    return "file://" + (slash > 0 ? path.substring(0, slash) : "/")
}

// About `count` round tick values covering [min, max], ascending.
function ticks(min, max, count) {
    if (!(max > min) || !isFinite(min) || !isFinite(max))
        return []
    var raw = (max - min) / Math.max(1, count)
    var magnitude = Math.pow(10, Math.floor(Math.log(raw) / Math.LN10))
    var residual = raw / magnitude
    var step = (residual > 5 ? 10 : residual > 2 ? 5 : residual > 1 ? 2 : 1) * magnitude
    var values = []
    for (var value = Math.ceil(min / step) * step; value <= max + step * 1e-9; value += step)
        values.push(Math.abs(value) < step * 1e-9 ? 0 : value)
    return values
}
