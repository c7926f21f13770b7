#!/usr/bin/env bash
# words.sh [ROOT]: no tracked file and no commit message names the documents or the workplace that the program was
# made from: a reader of the repository has neither. Outside of git every file counts as tracked, and the messages
# are passed over.
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/../..}"

rule='\bPart [1-7]\.[1-9]\b|\bParts [1-7]\.[1-9]|spec\.md|\bthe spec\b|\bspecification\b'
rule+='|\.\./shared|/(wor|far)[km]/|\bthis session\b|\bprompt(ed)? by\b|\bLLM\b'

# A tree that another user owns is still this tree.
git_here() { git -c safe.directory="$PWD" "$@"; }
in_git() { [ -e .git ] && command -v git >/dev/null && git_here rev-parse --git-dir >/dev/null 2>&1; }

failed=0
if in_git; then
    list_files() { git_here ls-files -z; }
else
    list_files() { find . -path ./build -prune -o -type f -print0; }
fi
if [ "$(list_files | tr -dc '\0' | wc -c)" -eq 0 ]; then
    echo "words: no file under $PWD: nothing was checked" >&2
    exit 1
fi

# Continuous integration may point tests at material beside the repository; nothing else may know of it.
hits=$(list_files | xargs -0 grep -HniIE -e "$rule" -- /dev/null | grep -vE '^(\./)?\.ci/run:[0-9]+:ZENVORA_[A-Z_]+=' || true)
if [ -n "$hits" ]; then
    printf 'words: these lines name what a reader of the repository does not have:\n%s\n' "$hits" >&2
    failed=1
fi

if in_git; then
    messages=$(git_here log --format='%h %B' HEAD 2>/dev/null | grep -niE -e "$rule" || true)
    if [ -n "$messages" ]; then
        printf 'words: these commit messages do:\n%s\n' "$messages" >&2
        failed=1
    fi
else
    echo "words: no git history here: the commit messages were not looked at"
fi
exit $failed
