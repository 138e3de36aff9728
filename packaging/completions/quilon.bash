# Completions of quilon for bash: the program is asked for them.
#
# Words are taken from the line itself, because bash ends words at '=', ':' and '@', which selections are made of.
_quilon()
{
  local line=${COMP_LINE:0:COMP_POINT} word meaning before
  local -a words
  read -ra words <<<"$line"
  [[ $line == *[[:space:]] ]] && words+=("")
  words=("${words[@]//[\'\"\\]/}")
  words=("${words[@]/#\~\//$HOME/}")
  local written=${words[-1]}
  # What stands before the last of these marks is left alone by bash.
  before=${written%"${written##*[=:@]}"}

  COMPREPLY=()
  while IFS=$'\t' read -r word meaning; do
    if [[ $word == :files ]]; then
      compopt -o filenames 2>/dev/null
      while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -f -- "${COMP_WORDS[COMP_CWORD]}")
    else
      word=${word#"$before"}
      [[ $word == *[=:@.] ]] && compopt -o nospace 2>/dev/null
      [[ $word == *[[:space:]\'\"\;\&\(\)\<\>\|\$\*\?]* ]] && printf -v word %q "$word"
      COMPREPLY+=("$word")
    fi
  done < <("${words[0]}" __complete "${words[@]:1}" 2>/dev/null)
}
complete -F _quilon quilon
