#!/usr/bin/env bash
# planted.sh CASE: runs a check of the tree on a small tree with one violation in it and fails when the check passes.
# A check that cannot fail proves nothing.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

put() { mkdir -p "$(dirname "$tree/$1")" && printf '%s\n' "$2" >"$tree/$1"; }
check_layers() { cmake -DROOT="$tree" -P "$root/cmake/CheckLayers.cmake"; }
check_words() { "$root/tests/checks/words.sh" "$tree"; }
check_format() { cp "$root/.clang-format" "$tree/" && "$root/scripts/check_format.sh" "$tree"; }
check_help() { "$root/tests/checks/help.py" "$tree"; }
put_help() {
    put help/ZVR.html '<ul><li><a href="config.html">x</a></li></ul>'
    put help/config.html "${1:-<p>x</p>}"
    put help/ZVR.hhp $'[FILES]\nZVR.html\nconfig.html'
    put help/ZVR.hhc '<param name="Local" value="ZVR.html"><param name="Local" value="config.html">'
    put src/frame/frm_config.cpp 'common::OpenHelp(session_, "config");'
}
commit() {
    git -C "$tree" init -q
    git -C "$tree" add -A
    git -C "$tree" -c user.name=test -c user.email=test@example.invalid commit -q -m "$1"
}

# refuses NEEDLE COMMAND...: the command must fail and its output must hold the needle.
refuses() {
    local needle=$1 output
    shift
    if output=$("$@" 2>&1); then
        echo "the check passed over a violation"; echo "$output"; exit 1
    fi
    # CMake breaks its messages into lines.
    tr -s '\n ' ' ' <<<"$output" | grep -qF -- "$needle" || { echo "it failed for another reason:"; echo "$output"; exit 1; }
}
accepts() {
    local output
    output=$("$@" 2>&1) || { echo "the check refused a sound tree:"; echo "$output"; exit 1; }
}

case ${1:-} in
    help-accepts-sound-pages)
        put_help
        accepts check_help ;;
    help-refuses-a-link-that-leads-nowhere)
        put_help '<p><a href="gone.html">x</a></p>'
        refuses "config.html: gone.html leads nowhere" check_help ;;
    help-refuses-an-open-tag)
        put_help '<p><b>x</p>'
        refuses "config.html: line 1: </p> closes nothing that is open" check_help ;;
    help-refuses-a-page-that-is-not-in-the-contents)
        put_help
        put help/other.html '<p></p>'
        refuses "other.html is not in the contents" check_help ;;
    help-refuses-a-page-that-the-program-asks-for-in-vain)
        put_help
        put src/frame/a.cpp 'common::OpenHelp(session_, "other");'
        refuses "there is no page other.html" check_help ;;
    help-refuses-an-empty-tree)
        refuses "ZVR.html" check_help ;;
    layers-accept-a-sound-tree)
        put platform/fault.h ''
        put platform/text/utf8.h '#include "platform/fault.h"'
        put platform/jet/database.cpp '#include "platform/jet/detail/page.h"'
        put analysis/period.h '#include "databook/selection.h"'
        put desktop/view.cpp '#include <QWidget>'
        accepts check_layers ;;
    layers-refuse-an-upward-include)
        put databook/selection.cpp '#include "analysis/period.h"'
        refuses "databook does not stand on analysis" check_layers ;;
    layers-refuse-a-subsystem-in-another)
        put records/edit.cpp '#  include <import/wizard.h>'
        refuses "records does not stand on import" check_layers ;;
    layers-refuse-a-sideways-platform-folder)
        put platform/text/date.cpp '#include "platform/shell/clock.h"'
        refuses "platform/text does not stand on platform/shell" check_layers ;;
    layers-refuse-private-headers)
        put platform/ado/connection.cpp '#include "platform/jet/detail/page.h"'
        refuses "detail/ is for its own folder" check_layers ;;
    layers-refuse-qt-in-the-logic)
        put cli/calc.cpp '#include <QString>'
        refuses "know Qt" check_layers ;;
    layers-refuse-an-unknown-folder)
        put elsewhere/thing.h ''
        refuses "no place in the house" check_layers ;;
    layers-refuse-a-relative-include)
        put cli/calc.cpp '#include "command.h"'
        refuses "write the path from src/" check_layers ;;
    layers-refuse-an-empty-tree)
        refuses "nothing was checked" check_layers ;;
    words-accept-a-sound-tree)
        put src/a.h '// The special part of a specified price.'
        put .ci/run "ZENVORA_THING=..""/shared/thing"
        accepts check_words ;;
    words-refuse-a-file)
        put src/a.h "// as Pa""rt 3.1 says"
        refuses "src/a.h:1" check_words ;;
    words-refuse-a-path-outside)
        put docs/a.md "see ..""/shared/thing"
        refuses "docs/a.md:1" check_words ;;
    words-refuse-other-lines-of-the-script)
        put .ci/run "cp ..""/shared/thing ."
        refuses ".ci/run:1" check_words ;;
    words-refuse-a-commit-message)
        command -v git >/dev/null || exit 77
        put src/a.h '// sound'
        commit "Follow the sp""ec"
        refuses "commit messages" check_words ;;
    words-refuse-an-empty-tree)
        refuses "nothing was checked" check_words ;;
    format-refuses-a-crooked-file)
        clang-format --version | grep -q ' 14\.' || exit 77
        put src/a.h 'int   a ;'
        refuses "code should be clang-formatted" check_format ;;
    *) echo "planted.sh: no such case: ${1:-}" >&2; exit 2 ;;
esac
