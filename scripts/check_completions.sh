#!/usr/bin/env bash
# Lets bash, zsh and fish complete lines of quilon, and lets man show its pages.
#
# usage: scripts/check_completions.sh PROGRAM COMPLETIONS MAN
#
#   PROGRAM      the program
#   COMPLETIONS  the folder of quilon.bash, _quilon and quilon.fish
#   MAN          the folder of the man pages, compressed or not
#
# A shell that is not installed is an error.
set -euo pipefail

if [[ ${1:-} == --help || ${1:-} == -h || $# -ne 3 ]]; then
  sed -n '2,10s/^# \{0,1\}//p' "$0"
  exit $(($# == 1 ? 0 : 2))
fi

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
program=$(realpath "$1")
completions=$(realpath "$2")
man=$(realpath "$3")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/bin" "$scratch/home"
ln -s "$program" "$scratch/bin/quilon"
export PATH=$scratch/bin:$PATH HOME=$scratch/home LC_ALL=C.UTF-8
cd "$scratch"
for extension in inp frd dat; do
  cp "$root/tests/fixtures/calculix/b_hex/b_hex.$extension" "bracket.$extension"
done
quilon import bracket.inp bracket.frd bracket.dat -o bracket.fed >/dev/null

# What a shell makes of a line: candidates, one a line, sorted. bash leaves out what stands before its last word break.
in_bash() {
  bash --norc -c 'source "$1/quilon.bash"; COMP_LINE=$2 COMP_POINT=${#2}; COMP_WORDS=("${2##* }") COMP_CWORD=0
    _quilon; printf "%s\n" "${COMPREPLY[@]}"' bash "$completions" "$1" | LC_ALL=C sort
}
in_fish() {
  fish --no-config -c 'source $argv[1]/quilon.fish; complete --do-complete $argv[2]' "$completions" "$1" |
    cut -f 1 | LC_ALL=C sort
}
# What completion hands to a function, and a place for what it says, in a shell without a terminal.
in_zsh() {
  zsh -f -c '
    compadd() { while [[ $1 != -- ]] shift; shift; for word; do [[ $word == $PREFIX* ]] && print -r -- $word; done }
    _files() { print -rl -- $PREFIX*(N) }
    words=("${(@s: :)2}") CURRENT=${#words} PREFIX=${words[-1]}
    source $1/_quilon' zsh "$completions" "$1" | LC_ALL=C sort
}

expect() { # SHELL LINE CANDIDATE...
  local shell=$1 line=$2 found
  shift 2
  found=$("in_$shell" "$line" </dev/null)
  if [[ $found != "$(printf '%s\n' "$@" | LC_ALL=C sort)" ]]; then
    printf 'check_completions: %s: "%s" has\n%s\nexpected\n%s\n' "$shell" "$line" "$found" "$(printf '%s\n' "$@")" >&2
    exit 1
  fi
}
for shell in bash zsh fish; do
  expect "$shell" "quilon sh" show
  expect "$shell" "quilon deck e" expand
  expect "$shell" "quilon show bracket.fed displ" displacement
  expect "$shell" "quilon max bracket.fed stress.mis" stress.mises
  expect "$shell" "quilon show bracket.fed --st" --steps
  expect "$shell" "quilon show bracket.fed --steps " 1 last
  expect "$shell" "quilon show bracket.fed --set N" NALL NX0 NX1
  expect "$shell" "quilon check bracket.i" bracket.inp
done
expect bash "quilon show bracket.fed stress@lc=" 1 first last
expect zsh "quilon show bracket.fed stress@lc=" stress@lc=1 stress@lc=first stress@lc=last
expect fish "quilon show bracket.fed stress@lc=" stress@lc=1 stress@lc=first stress@lc=last

# What zsh makes of lines at a Tab, on a terminal of its own: completion as users have it, nothing in its place.
in_terminal() {
  timeout 60 zsh -f -c '
    zmodload zsh/zpty && zpty shell zsh -f -i || exit 1
    zpty -w shell "PROMPT= RPROMPT= TERM=dumb; unsetopt prompt_sp prompt_cr; stty -echo; unset zle_bracketed_paste"
    zpty -w shell "fpath=($1 \$fpath); autoload -Uz compinit; compinit -u -D"
    zpty -w shell "completed() { zle complete-word; local line=\$BUFFER; BUFFER=; print -r -- \"<\$line>\" }"
    zpty -w shell "zle -N completed; bindkey ^T completed; print READ\Y"
    zpty -r shell found "*READY*"
    shift
    for line; do
      zpty -w -n shell "$line"$'\''\x14'\''
      zpty -r shell found "*<*>*"
      found=${found##*<}
      print -r -- "${found%%>*}"
    done
    zpty -d shell' zsh "$completions" "$@"
}
expected=("quilon show " "quilon deck expand " "quilon show bracket.fed displacement " "quilon max bracket.fed stress.mises "
  "quilon show bracket.fed --set NALL " "quilon check bracket.inp ")
found=$(in_terminal "quilon sh" "quilon deck e" "quilon show bracket.fed displ" "quilon max bracket.fed stress.mis" \
  "quilon show bracket.fed --set NA" "quilon check bracket.i") || true
if [[ $found != "$(printf '%s\n' "${expected[@]}")" ]]; then
  printf 'check_completions: zsh on a terminal has\n%s\nexpected\n%s\n' "$found" "$(printf '%s\n' "${expected[@]}")" >&2
  exit 1
fi

count=0
for page in "$man"/quilon*.1*; do
  warnings=$(MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)
  [[ -z $warnings ]] || { printf 'check_completions: %s:\n%s\n' "$page" "$warnings" >&2; exit 1; }
  count=$((count + 1))
done
((count > 20)) || { echo "check_completions: $man has $count pages, expected one for each command" >&2; exit 1; }
echo "completions in bash, zsh and fish, $count man pages"
