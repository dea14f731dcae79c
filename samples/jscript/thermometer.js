// Draws readings of a thermometer: one mapper turns volts into degrees, another one degrees into columns, and a colour
// is dimmed for each.
var toDegrees = new ActiveXObject("ZEQUtility2.CRangeMapper");
toDegrees.SetDomain(0.5, 4.5);  // Volts.
toDegrees.SetRange(-40, 120);   // Degrees.

var toColumns = new ActiveXObject("ZEQUtility2.CRangeMapper");
toColumns.SetDomain(-40, 120);
toColumns.SetRange(0, 40);

var numbers = new ActiveXObject("ZEQUtility2.CZEQUtilityNumerical");

function bar(length) {
  var result = "";
  while (result.length < length) {
    result += "#";
  }
  return result;
}

function hexadecimal(colour) {
  var digits = colour.toString(16).toUpperCase();
  while (digits.length < 6) {
    digits = "0" + digits;
  }
  return digits;
}

var readings = [0.9, 1.4, 2.25, 3.1, 4.8];
for (var i = 0; i < readings.length; ++i) {
  // A reading beyond the sensor's range is taken as its end.
  var volts = numbers.NumVal_Limit(readings[i], 0.5, 4.5);
  var degrees = toDegrees.ToRange(volts);
  var brightness = numbers.NumVal_Scale(degrees, -40, 120, 0, 255);
  var colour = numbers.Color_CompressRange(0xFFFFFF, 0, brightness);
  WScript.Echo(readings[i] + " V = " + Math.round(degrees) + " degrees " + hexadecimal(colour) + " " +
               bar(toColumns.ToRange(degrees)));
}
