#!/usr/bin/env bash
# Builds the reference documentation into docs/site: from the built type library's help texts and the pages in docs/.
# It fails where a class lacks its page, a page does not name a public member, or a help text is missing.
source "$(dirname "$0")/lib.sh"
"$root/tools/build.sh" win64
use_prefix docs

step "docs: reading the type library"
describe_library 64 "$build/typelib.json"
stop_prefix
step "docs: writing the site"
/usr/bin/python3 "$root/tools/docs/build_site.py" "$build/typelib.json" "$root/docs" "$root/docs/site"
