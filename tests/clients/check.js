
// What every JScript client test uses; tools/clients.sh appends this file to each script, as check.vbs is appended to the
// VBScript ones.
//
//   equal(name, actual, expected)                 the same type and value
//   raised(name, action, number, description)     the error that a function ends with
//   refused(name, action)                         an error whose number and text are the script engine's own
//   items(collection)                             an array of what the collection's enumerator gives
//   scratch()                                     the path of an empty folder that is the script's own

var checksPassed, checksFailed;

function report(name, isGood, complaint) {
  if (isGood) {
    checksPassed = (checksPassed || 0) + 1;
    WScript.Echo("ok " + name);
  } else {
    checksFailed = (checksFailed || 0) + 1;
    WScript.Echo("FAILED " + name + ": " + complaint);
  }
}

function equal(name, actual, expected) {
  report(name, typeof actual === typeof expected && actual === expected,
         "expected " + shown(expected) + ", got " + shown(actual));
}

function errorOf(action) {
  try {
    action();
  } catch (error) {
    return error;
  }
  return null;
}

function refused(name, action) { report(name, errorOf(action) !== null, "no error"); }

function raised(name, action, number, description) {
  var error = errorOf(action);
  if (error === null) {
    report(name, false, "no error");
    return;
  }
  report(name, (error.number & 0xFFFF) === number && error.description === description,
         "expected " + number + " " + shown(description) + ", got " + (error.number & 0xFFFF) + " " +
             shown(error.description));
}

function items(collection) {
  var result = [];
  for (var each = new Enumerator(collection); !each.atEnd(); each.moveNext()) {
    result.push(each.item());
  }
  return result;
}

function scratch() { return WScript.Arguments(0); }

function shown(value) { return typeof value === "string" ? '"' + value + '"' : typeof value + " " + value; }

WScript.Echo((checksPassed || 0) + " passed, " + (checksFailed || 0) + " failed");
