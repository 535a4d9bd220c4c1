// A late-bound host: the object by its ProgID, its properties by their names. Prints a
// line a finding; "done" comes last, since a script that fails ends with status 0.
var file = WScript.Arguments(0);

function dateText(date) {
    var d = new Date(date);
    return d.getFullYear() + "-" + (d.getMonth() + 1) + "-" + d.getDate();
}

// As text: of a path the name, of a document the first line.
function valueText(name, value) {
    if (/DateTime$/.test(name))
        return dateText(value);
    if (name === "FileName")
        return value.replace(/.*[\/\\]/, "");
    if (name === "Environment")
        return value.split("\r\n")[0].substr(0, 40);
    if (value === "")
        return "(empty)";
    return value === null || typeof value !== "object" ? value : "an object";
}

// Reads each of an object's properties once. Those that are arrays of texts are none for a
// script.
function readAll(what, object, names) {
    WScript.Echo(what);
    for (var i = 0; i < names.length; i++) {
        var text;
        var error = errorOf(function () { text = valueText(names[i], object[names[i]]); });
        say("  " + names[i], error === "none" ? text : "refused " + error);
    }
}

// Writes what was read, and reads it again.
function writeAll(what, object, names) {
    WScript.Echo(what + ", written");
    for (var i = 0; i < names.length; i++) {
        var value = object[names[i]];
        var error = errorOf(function () { object[names[i]] = value; });
        var text = valueText(names[i], object[names[i]]);
        say("  " + names[i], error === "none" ? text : "refused " + error);
    }
}

// Writes a value of one's own, and reads what stands then.
function put(name, value) {
    var error = errorOf(function () { converter[name] = value; });
    say("put " + name, error === "none" ? valueText(name, converter[name]) : "refused " + error);
}

function valid(what) {
    converter.InitFieldsInfo();
    say(what, converter.ValidResolution);
}

new ActiveXObject("TabulexConverter.qrlTabulexConvertor.1");
var converter = new ActiveXObject("TabulexConverter.qrlTabulexConvertor");

// ---- without a file

refused("no file to name", function () { return converter.FileName; });
refused("no file to release", function () { converter.ReleaseFile(); });
say("no choice", converter.FieldTemplate + " " + converter.TimeZoneTemplate);

// ---- the host's lists

converter.AddResolutionTemplate(2, "Minutes");
converter.AddResolutionTemplate(4, "Days");
converter.AddFieldTemplate(7, "Mine");
converter.AddTimeZoneTemplate(3, "Here");
refused("field again", function () { converter.AddFieldTemplate(8, "Mine"); });
refused("resolution again", function () { converter.AddResolutionTemplate(5, "Days"); });
refused("time zone again", function () { converter.AddTimeZoneTemplate(4, "Here"); });

// ---- what is found in a file

converter.FileName = file;
readAll("converter", converter,
        ["FieldCount", "DataParser", "ValidResolution", "FileName", "FieldTemplate",
         "SymbolName", "ResolutionTemplate", "ResolutionSizeTemplate",
         "TimeZoneTemplate", "StartDateTime", "EndDateTime", "PriceMultiplier",
         "VolumeMultiplier", "Environment", "Mode"]);
var parser = converter.DataParser;
readAll("parser", parser,
        ["CurrentRecord", "LastRecord", "FieldCount", "FileName", "Position",
         "RecordParser", "HasHeader", "HeaderOffset", "InvertedDirection",
         "StartDateTime", "EndDateTime", "Locale", "AutoDetectCodePage",
         "DisableErrorNotify", "SymbolName"]);
var records = parser.RecordParser;
readAll("record parser", records,
        ["FieldCount", "CurrentDateTime", "DuplicatedField", "DataParser", "EventHandler",
         "Environment", "Resolution", "ResolutionSize", "LinesToSkip", "PriceMultiplier",
         "VolumeMultiplier", "SmartResolutionEnabled", "FieldDividers", "UseBarsEndTime"]);
readAll("multiplier", records.PriceMultiplier, ["Current"]);

// ---- choices

put("FieldTemplate", 7);
put("FieldTemplate", 9);
put("TimeZoneTemplate", 3);
put("TimeZoneTemplate", 9);
put("ResolutionSizeTemplate", 2);
put("ResolutionSizeTemplate", 1);
put("ResolutionTemplate", 4);
put("ResolutionTemplate", 8);
var first = converter.StartDateTime, last = converter.EndDateTime;
put("StartDateTime", last);
put("StartDateTime", first);
put("EndDateTime", first);
put("EndDateTime", last);
put("PriceMultiplier", 0x43);
put("PriceMultiplier", 3);
put("VolumeMultiplier", 0x4D);
put("VolumeMultiplier", 3);
put("SymbolName", "ABC");
put("SymbolName", "");
put("Environment", converter.Environment);
put("Environment", "no document");
refused("put Mode 1", function () { converter.Mode = 1; });
refused("put Mode 2", function () { converter.Mode = 2; });
converter.SelectResolution(1, 2); // doesn't fit
say("unfit resolution", converter.ResolutionTemplate);
converter.SelectResolution(1, 4);
say("fit resolution", converter.ResolutionTemplate);

// ---- columns

converter.SetField(0, 0, "");
valid("without a date");
converter.SetField(0, 421, "*y/*m/*d");
valid("with a date");
refused("no such column", function () { converter.SetField(99, 421, "*y/*m/*d"); });

// ---- the level below

parser.Position = 3;
say("record at 3", parser.CurrentRecord);
writeAll("parser", parser,
         ["Position", "RecordParser", "HasHeader", "HeaderOffset", "InvertedDirection",
          "StartDateTime", "EndDateTime", "Locale", "AutoDetectCodePage",
          "DisableErrorNotify", "SymbolName", "FileName"]);
writeAll("record parser", records,
         ["DataParser", "Environment", "Resolution", "ResolutionSize", "LinesToSkip",
          "PriceMultiplier", "VolumeMultiplier", "SmartResolutionEnabled", "FieldDividers",
          "UseBarsEndTime"]);
writeAll("multiplier", records.PriceMultiplier, ["Current"]);

// ---- what a script can't do: be a sink, which is called through its slots, and give a
// place for what an operation fills

refused("check", function () { converter.CheckConverterSettings(0, {}); });
refused("convert", function () { converter.DoConvert({}, 0); });
refused("portion", function () { converter.DoConvertPortion(0, {}, 0, 1); });
refused("symbols", function () { converter.DoEnumSymbols({}); });
refused("nothing to end", function () { converter.Unadvise({}); });
refused("dialog", function () { converter.DoAnalyse(false, 0); });
refused("column", function () { converter.GetField(0, 0, ""); });
refused("clone", function () { converter.Clone(null); });

// ---- calls that aren't right

refused("arguments", function () { converter.AddFieldTemplate(1); });
refused("kind", function () { converter.Mode = "x"; });
refused("name", function () { converter.NoSuchName(); });
refused("put of what is read only", function () { converter.FieldCount = 1; });

refused("release", function () { converter.ReleaseFile(); });
WScript.Echo("done");
