# What a desktop is made of, as long as it runs: sourced by the scripts that make one.
started=()

# Nobody is to wait for the caller's output because one of these still has it open.
start() {
    "$@" >>"$CORVELLA_DESKTOP/log" 2>&1 4>&- 5>&- 6>&- &
    started+=($!)
}

# The last one first. Some hang in what they do when they are told to end.
end_started() {
    local i last
    for ((i = ${#started[@]} - 1; i >= 0; --i)); do kill "${started[i]}" 2>/dev/null || true; done
    (sleep 3 && kill -KILL "${started[@]}") >/dev/null 2>&1 4>&- 5>&- &
    last=$!
    wait "${started[@]}" 2>/dev/null || true
    kill "$last" 2>/dev/null || true
}
