.pragma library

/// "02:03.450" of 123450 ms
function toText(milliseconds) {
    var rounded = Math.max(0, Math.round(milliseconds));
    var seconds = Math.floor(rounded / 1000);
    return String(Math.floor(seconds / 60)).padStart(2, "0") + ":" + String(seconds % 60).padStart(2, "0") + "."
            + String(rounded % 1000).padStart(3, "0");
}

/// ms of "2:03.45", or of seconds alone; -1 for any other text
function fromText(text) {
    var parts = /^\s*(?:(\d{1,4}):)?(\d{1,6}(?:[.,]\d{1,3})?)\s*$/.exec(text);
    return parts ? Math.round(Number(parts[1] || 0) * 60000 + Number(parts[2].replace(",", ".")) * 1000) : -1;
}
