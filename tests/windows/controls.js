// A late-bound host and the three controls, by their ProgIDs: every property and method as a script
// without a container has them. Prints a line a finding; "done" comes last, since a script that
// fails ends with status 0.
var file = WScript.Arguments(0);

// What stands first, and what stands after each value is put.
function walk(object, name, values) {
    var text = name + " " + object[name];
    for (var i = 0; i < values.length; i++) {
        object[name] = values[i];
        text += ", " + object[name];
    }
    WScript.Echo(text);
}

function nameOf(path) {
    return path.replace(/.*[\/\\]/, "");
}

// ---- the grid

var grid = new ActiveXObject("TabulexConverter.QRLDataGridViewCtrl");
walk(grid, "AutoSize", [true, false]);
walk(grid, "BackColor", [0x123456]);
walk(grid, "BorderStyle", [1]);
walk(grid, "BorderWidth", [2]);
walk(grid, "Enabled", [false, true]);
walk(grid, "TabStop", [true]);
walk(grid, "TextMode", [true, true, false]);
refused("no parser", function () { return grid.DataParser; });
refused("no fields", function () { grid.CreateFields(); });
refused("another object as a parser", function () { grid.DataParser = {}; });
var parser = new ActiveXObject("TabulexConverter.DataParser");
parser.FileName = file;
grid.DataParser = parser;
say("parser", grid.DataParser.FieldCount);
refused("fields without a window", function () { grid.CreateFields(); });
refused("refresh", function () { grid.Refresh(); });
refused("detach", function () { grid.NotifySourceDetach(); });
refused("null as a sink", function () { grid.DataChangeSink = null; });
refused("another object as a sink", function () { grid.DataChangeSink = {}; });
refused("no event", function () { grid.oncomplexfieldchange = function () {}; });
refused("null as a parser", function () { grid.DataParser = null; });
say("parser still", grid.DataParser.FieldCount);

// ---- the folder view

var folder = new ActiveXObject("TabulexConverter.FolderViewCtrl");
say("no file", "'" + folder.FileName + "'");
walk(folder, "Title", ["Quotes"]);
folder.FileName = file;
say("file", nameOf(folder.FileName));
say("folder", nameOf(folder.Folder));
refused("no such file", function () { folder.FileName = file + ".none"; });
say("file still", nameOf(folder.FileName));
folder.onchange = function () { say("changed by nobody", ""); };
refused("onchange of a number", function () { folder.onchange = 7; });
walk(folder, "disabled", [1]);
folder.Folder = "C:\\";
say("folder still", nameOf(folder.Folder));
folder.disabled = 0;
folder.Folder = "C:\\";
say("folder", folder.Folder);
say("no file again", "'" + folder.FileName + "'");

// ---- the contained control

var contained = new ActiveXObject("TabulexConverter.QRLCommonCtrlContained");
refused("no procedure", function () { contained.CreateControl("EDIT", "", 0, 0, 0, 0); });
refused("kept", function () { contained.CreateControl("EDIT", "", 0x50000000, 0, 0, 4096); });
refused("no window", function () { return contained.ControlHWND; });
refused("no message", function () { contained.DefWindowProcW(0, 0); });
refused("nothing to forward", function () { contained.DefWindowProc0(0); });
WScript.Echo("done");
