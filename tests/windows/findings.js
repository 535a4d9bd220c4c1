// How a script tells what it found: a line a finding. Stands in front of each script, since the script
// host knows no includes.
function say(what, value) {
    WScript.Echo(what + " " + value);
}

function errorOf(call) {
    try {
        call();
        return "none";
    } catch (e) {
        return (e.number >>> 0).toString(16);
    }
}

function refused(what, call) {
    say(what, errorOf(call));
}
