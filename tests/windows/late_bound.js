// A late-bound host: the object by its ProgID, its properties by their names. Prints a
// line a finding; "done" comes last, since a script that fails ends with status 0.
var file = WScript.Arguments(0);

function errorOf(call) {
    try {
        call();
        return "none";
    } catch (e) {
        return (e.number >>> 0).toString(16);
    }
}

function dateText(date) {
    var d = new Date(date);
    return d.getFullYear() + "-" + (d.getMonth() + 1) + "-" + d.getDate();
}

var converter = new ActiveXObject("TabulexConverter.qrlTabulexConvertor");
converter.AddResolutionTemplate(2, "Minutes");
converter.AddResolutionTemplate(4, "Days");
converter.AddFieldTemplate(7, "Mine");
WScript.Echo("name again " + errorOf(function () { converter.AddFieldTemplate(8, "Mine"); }));
converter.FileName = file;
WScript.Echo("fields " + converter.FieldCount);
WScript.Echo("resolution " + converter.ResolutionTemplate + " size " +
             converter.ResolutionSizeTemplate + " valid " + converter.ValidResolution);
WScript.Echo("dates " + dateText(converter.StartDateTime) + " to " +
             dateText(converter.EndDateTime));
WScript.Echo("multiplier " + converter.PriceMultiplier);
converter.FieldTemplate = 7;
WScript.Echo("field template " + converter.FieldTemplate);
WScript.Echo("unknown id " + errorOf(function () { converter.FieldTemplate = 9; }));
WScript.Echo("mode " + errorOf(function () { converter.Mode = 2; }));
WScript.Echo("arguments " + errorOf(function () { converter.AddFieldTemplate(1); }));
WScript.Echo("kind " + errorOf(function () { converter.Mode = "x"; }));
WScript.Echo("name " + errorOf(function () { converter.NoSuchName(); }));
WScript.Echo("done");
