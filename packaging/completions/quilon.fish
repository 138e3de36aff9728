# Completions of quilon for fish: the program is asked for them.
function __quilon_candidates
    set -l words (commandline --tokenize --cut-at-cursor --current-process) (commandline --current-token --cut-at-cursor)
    for line in (command $words[1] __complete $words[2..] 2>/dev/null)
        if test "$line" = :files
            __fish_complete_path (commandline --current-token --cut-at-cursor)
        else
            echo $line
        end
    end
end
complete --command quilon --no-files --arguments '(__quilon_candidates)'
