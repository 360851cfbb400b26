# A virtual screen for machines without a display; to be sourced after common.sh.
# shellcheck shell=bash

has_display() {
    [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]
}

has_only_wayland() {
    [ -z "${DISPLAY:-}" ] && [ -n "${WAYLAND_DISPLAY:-}" ]
}

# picture_of_screen FILE: waits until the screen shows something and holds still,
# at most a minute, and saves it.
picture_of_screen() {
    local file=$1 last='' now=''
    for _ in $(seq 60); do
        import -window root "$file"
        now=$(sha256sum <"$file")
        if [ "$now" = "$last" ] && [ "$(identify -format %k "$file")" -gt 8 ]; then
            return 0
        fi
        last=$now
        sleep 1
    done
    return 1
}

# show_on_virtual_screen FILE COMMAND...: runs a program on a screen of its own, saves
# a picture of it, and ends it the way a desktop session does; its exit status.
show_on_virtual_screen() (
    file=$1
    shift
    status=0
    program='' screen='' runtime=''
    trap 'kill $program $screen 2>/dev/null; rm -rf "$runtime"' EXIT

    mkdir -p "$(dirname "$file")"
    runtime=$(mktemp -d)
    if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
        export XDG_RUNTIME_DIR=$runtime
    fi
    say "No display: starting a virtual one"
    # -noreset: a screen that restarts when a passing client leaves refuses the next.
    Xvfb -displayfd 3 -screen 0 1180x860x24 -nolisten tcp -noreset 3>"$runtime/display" 2>"$runtime/xvfb.log" &
    screen=$!
    for _ in $(seq 100); do
        [ -s "$runtime/display" ] && break
        sleep 0.1
    done
    [ -s "$runtime/display" ] || die "Xvfb did not start: $(cat "$runtime/xvfb.log")"
    DISPLAY=:$(cat "$runtime/display")
    export DISPLAY
    xdotool mousemove 0 0 # else the pointer hovers over the middle of the picture

    "$@" &
    program=$!
    for _ in $(seq 240); do
        if xdotool search --onlyvisible --name '^Quire$' >/dev/null 2>&1; then
            break
        fi
        kill -0 "$program" 2>/dev/null || { wait "$program" || status=$?; die "the program ended with status $status before its window opened"; }
        sleep 0.25
    done
    xdotool search --onlyvisible --name '^Quire$' >/dev/null 2>&1 || die "no window within a minute"
    picture_of_screen "$file" || die "the window never came to rest"
    say "Screenshot saved in ${file#"$QUIRE_ROOT"/}"

    kill -TERM "$program"
    wait "$program" || status=$?
    program=''
    exit "$status"
)
