# A private X desktop for one program on a machine without a display. Read by ./run (bash).
#
# Everything it starts is a child of this script in a session of its own (so that Ctrl+C reaches the script alone), is ended
# by its process id, the last started first, and is ended by the kernel should the script itself be killed.

desktopFolder=
desktopProcesses=() # the last started comes first
program=
readyLine=
streamPort=     # where the desktop can be seen in a browser
streamPortFile= # if it is ours to remove

# inDesktop LOG COMMAND...   Starts a service of the desktop; its id is in $!.
inDesktop() {
    local log=$1
    shift
    setpriv --pdeathsig TERM -- setsid "$@" >"$desktopFolder/$log.log" 2>&1 </dev/null &
    desktopProcesses=($! "${desktopProcesses[@]}")
}

# inDesktopUntilReady LOG COMMAND...   Starts a service that writes one line to descriptor 3 when it is ready: $readyLine.
inDesktopUntilReady() {
    local ready status
    mkfifo "$desktopFolder/$1.ready"
    exec {ready}<>"$desktopFolder/$1.ready" # open all the while: a line that nobody holds is lost
    inDesktop "$@" 3>&"$ready" {ready}>&-
    read -rt 20 -u "$ready" readyLine
    status=$?
    exec {ready}>&-
    return $status
}

endProcess() {
    local attempt
    kill "$1" 2>/dev/null
    for attempt in {1..100}; do
        kill -0 "$1" 2>/dev/null || break
        sleep 0.05
    done
    kill -KILL "$1" 2>/dev/null
    wait "$1" 2>/dev/null
}

# Stream servers that the program has started here: elsewhere they may outlive it, but here their display is gone.
endLeftStreams() {
    local process
    [ -n "$desktopFolder" ] || return 0
    for process in $(pgrep -f orvalen_web_stream.py); do
        if tr '\0' '\n' <"/proc/$process/environ" 2>/dev/null | grep -qxF "XAUTHORITY=$desktopFolder/Xauthority"; then
            endProcess "$process"
        fi
    done
}

endDesktop() {
    trap '' INT TERM HUP
    local process
    for process in "${desktopProcesses[@]}"; do
        endProcess "$process"
    done
    endLeftStreams
    [ -z "$streamPortFile" ] || rm -f "$streamPortFile"
    [ -z "$desktopFolder" ] || rm -rf "$desktopFolder"
}

# waitUntil SECONDS COMMAND...
waitUntil() {
    local attempts=$(($1 * 20)) attempt
    shift
    for ((attempt = 0; attempt < attempts; attempt++)); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.05
    done
    return 1
}

startDisplay() {
    # A cookie of our own: other users of the machine may not look. (Family "any", no address, no number, one cookie.)
    export XAUTHORITY=$desktopFolder/Xauthority
    (umask 077 && {
        printf '\xff\xff\0\0\0\0\0\x12MIT-MAGIC-COOKIE-1\0\x10'
        head -c 16 /dev/urandom
    } >"$XAUTHORITY")
    inDesktopUntilReady xvfb Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset -auth "$XAUTHORITY" || return 1
    export DISPLAY=:$readyLine
    unset WAYLAND_DISPLAY SESSION_MANAGER XDG_CURRENT_DESKTOP
    export XDG_SESSION_TYPE=x11 QT_QPA_PLATFORM=xcb
}

# A bus that starts nothing on its own: what nobody starts, nobody has to find and end.
startSessionBus() {
    cat >"$desktopFolder/bus.conf" <<END
<busconfig>
  <type>session</type>
  <listen>unix:dir=$desktopFolder</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
END
    inDesktopUntilReady bus dbus-daemon --config-file="$desktopFolder/bus.conf" --nofork --nopidfile --print-address=3 ||
        return 1
    export DBUS_SESSION_BUS_ADDRESS=$readyLine
}

# Sans-serif is Inter here: a bare machine would show the first font it finds.
chooseFonts() {
    cat >"$desktopFolder/fonts.conf" <<END
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <include ignore_missing="yes">/etc/fonts/fonts.conf</include>
  <match target="pattern">
    <test name="family"><string>sans-serif</string></test>
    <edit name="family" mode="prepend" binding="strong"><string>Inter</string></edit>
  </match>
</fontconfig>
END
    export FONTCONFIG_FILE=$desktopFolder/fonts.conf
}

hasWindowManager() {
    xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id #'
}

hasWindow() {
    xprop -root _NET_CLIENT_LIST | grep -q 'window id # 0x'
}

notStarted() {
    echo "The $1 did not start:" >&2
    tail -n 5 "$desktopFolder/$2.log" >&2
}

# Home and settings stay the user's, so that choices outlive the desktop; display, bus and run-time folder are private.
startDesktop() {
    local old owner
    for old in /tmp/orvalen-desktop.*; do # left by a script that was killed
        owner=${old#*.}
        [ ! -O "$old" ] || [ -d "/proc/${owner%.*}" ] || rm -rf "$old"
    done
    desktopFolder=$(mktemp -d "/tmp/orvalen-desktop.$$.XXXXXX") || return 1
    startDisplay || { notStarted "virtual display" xvfb; return 1; }
    startSessionBus || { notStarted "session bus" bus; return 1; }
    if ! [ -w "${XDG_RUNTIME_DIR:-/nonexistent}" ]; then
        mkdir -m 700 "$desktopFolder/runtime"
        export XDG_RUNTIME_DIR=$desktopFolder/runtime
    fi
    chooseFonts
    inDesktop openbox openbox
    waitUntil 20 hasWindowManager || { notStarted "window manager" openbox; return 1; }
    inDesktop dunst dunst
}

# inOwnTemporaryFolder FOLDER COMMAND...   Runs a command for which FOLDER is the folder /tmp; what we need of the real one
# is in it. In mount and user namespaces of its own.
inOwnTemporaryFolder() {
    local folder=$1 path
    shift
    for path in "$root" "$desktopFolder" /tmp/.X11-unix; do
        case $path in
            /tmp/*) mkdir -p "$folder/${path#/tmp/}" && mount --bind "$path" "$folder/${path#/tmp/}" || return ;;
        esac
    done
    mount --rbind "$folder" /tmp && exec setpriv --pdeathsig TERM -- "$@"
}

# startStream SERVER   Streams the desktop: $streamPort. The server writes under fixed names in the temporary folder; in one
# of its own it comes in the way of no other server. Where that cannot be had, another server's files are left alone.
startStream() {
    local server folder=$desktopFolder/stream own=(unshare --mount --propagation private)
    [ "$(id -u)" = 0 ] || own+=(--user --map-root-user)
    if "${own[@]}" true 2>/dev/null; then
        mkdir -m 700 "$folder"
        export root desktopFolder
        export -f inOwnTemporaryFolder
        inDesktop stream "${own[@]}" bash -c 'inOwnTemporaryFolder "$@"' bash "$folder" "$1"
    elif [ ! -e /tmp/orvalen_port.txt ]; then
        folder=/tmp
        streamPortFile=$folder/orvalen_port.txt
        inDesktop stream "$1"
    else
        return 1
    fi
    server=$!
    hasPort() { test -s "$folder/orvalen_port.txt"; }
    hasPortOrEnded() { hasPort || ! kill -0 "$server" 2>/dev/null; }
    waitUntil 10 hasPortOrEnded
    hasPort && streamPort=$(cat "$folder/orvalen_port.txt")
}

# An address at which others in the network find this machine; none if it is in no network.
networkAddress() {
    local address
    for address in $(hostname -I 2>/dev/null); do
        case $address in
            *:* | 169.254.*) ;;
            *)
                echo "$address"
                return
                ;;
        esac
    done
}

tellStream() {
    local address
    [ -n "$streamPort" ] || return 0
    address=$(networkAddress)
    if [ -n "$address" ]; then
        echo "The screen, live: open http://$address:$streamPort on a phone in the same network."
    else
        echo "The screen, live: open http://localhost:$streamPort in a browser on this machine."
    fi
}

# Replaces the picture as a whole: who looks never sees half of one.
takePicture() {
    timeout 20 import -silent -window root "png:$1.part" 2>/dev/null && mv -f "$1.part" "$1"
}

# A window is there a moment before anything is painted in it.
takePictureOfSomething() {
    takePicture "$1" && [ "$(identify -format %k "$1")" -gt 10 ]
}

# runInDesktop PICTURE PROGRAM   Runs the program to its end, taking a picture every two seconds. The program's status.
runInDesktop() {
    local picture=$1 pause status
    setpriv --pdeathsig TERM -- setsid "$2" </dev/null &
    program=$!
    desktopProcesses=("$program" "${desktopProcesses[@]}")

    isRunning() { kill -0 "$program" 2>/dev/null; }
    hasWindowOrEnded() { hasWindow || ! isRunning; }
    isShownOrEnded() { takePictureOfSomething "$picture" || ! isRunning; }
    waitUntil 30 hasWindowOrEnded
    if waitUntil 3 isShownOrEnded && isRunning; then
        echo "Picture of the screen, renewed every two seconds: $picture"
        tellStream
        echo "Ctrl+C ends it."
    fi
    while isRunning; do
        takePicture "$picture"
        sleep 2 &
        pause=$!
        desktopProcesses=("$pause" "${desktopProcesses[@]}")
        wait -n "$program" "$pause" 2>/dev/null
        kill "$pause" 2>/dev/null
        desktopProcesses=("${desktopProcesses[@]:1}")
    done
    wait "$program"
    status=$?
    desktopProcesses=("${desktopProcesses[@]:1}")
    return $status
}
