.pragma library

// How the CW pages show stored values and hand typed ones to the
// configuration's validation. Values are typed in a display unit (GHz,
// kHz, ...) and stored in the parameter's unit; `scale` is the factor
// between the two.

// The stored value as the field shows it, with a fixed number of decimals.
function show(value, scale, decimals) {
    if (value === undefined || value === null || isNaN(value))
        return ""
    return (Number(value) / scale).toFixed(decimals)
}

// The limits of a setting in the display unit, or null while the device
// has not told them (both zero, inverted, or unbounded). The shown bounds
// lie inside the device's: the minimum rounded up, the maximum down, so
// that typing a bound as shown is accepted. A thousandth of the last digit
// absorbs single-precision limits (63.5 GHz arrives as 63.499999 GHz).
function displayRange(min, max, scale, decimals) {
    if (min === undefined || max === undefined || !(max > min) || !isFinite(min) || !isFinite(max)
            || (min === 0 && max === 4294967295) || Math.abs(max) > 1e37)
        return null
    var digits = Math.pow(10, decimals)
    return { min: Math.ceil(min / scale * digits - 1e-3) / digits,
             max: Math.floor(max / scale * digits + 1e-3) / digits }
}

function rangeText(range, decimals) {
    if (!range)
        return ""
    return "[" + range.min.toFixed(decimals) + " – " + range.max.toFixed(decimals) + "]"
}

// A plain decimal number as people type it; anything else goes to the
// validation as typed, which names what is wrong with it.
function isPlainNumber(text) {
    return /^[+-]?(\d+\.?\d*|\.\d+)$/.test(String(text).trim())
}

// The typed text in the parameter's unit, for the validation and the
// parameter: whole parameters take the nearest whole value.
function toStored(text, scale, whole) {
    var value = Number(String(text).trim()) * scale
    return whole ? Math.round(value) : value
}

function storedText(text, scale, whole) {
    return isPlainNumber(text) ? String(toStored(text, scale, whole)) : String(text)
}
