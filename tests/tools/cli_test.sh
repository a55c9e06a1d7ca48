#!/bin/bash
# The program itself: exit statuses, one line on standard error, standard input and output, and what
# is left in the folder. Arguments: the program, and for Windows programs what runs them, which
# gives them no standard input.
program=$(realpath "$1") runner=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
message=$scratch/message
mkdir "$scratch/folder" && cd "$scratch/folder" || exit 1
failures=0

pxb() { $runner "$program" "$@"; }
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }
expect() { [ "$1" = "$2" ] || fail "expected '$2', got '$1'"; }

# refused PART ARGUMENTS...: status 2, one line that starts with "pxb: " and contains PART, no file.
refused() {
    local part=$1 before; shift
    before=$(ls)
    pxb "$@" >/dev/null 2>"$message"
    expect "$*: $?" "$*: 2"
    expect "$*: $(wc -l <"$message") lines" "$*: 1 lines"
    case $(cat "$message") in
        "pxb: "*"$part"*) ;;
        *) fail "$*: '$(cat "$message")' has no '$part'" ;;
    esac
    expect "left by $*: $(ls)" "left by $*: $before"
}

# stopped_by COMMAND...: stops $writer of out.y4m while it waits for more frames from `pipe`.
stopped_by() {
    exec 3>pipe
    cat large.y4m >&3
    for _ in $(seq 100); do compgen -G "pxb-*" >/dev/null && break; sleep 0.05; done
    expect "$(stat -c %a pxb-*)" $(stat -c %a out.y4m)
    "$@"
    wait $writer 2>/dev/null
    exec 3>&-
    compgen -G "pxb-*" >/dev/null && fail "an unfinished file was left after $*"
    [ -s out.y4m ] && fail "an older file was replaced after $*"
}

pxb testcard card.y4m --size 101x75 --frames 3 || fail testcard
pxb testcard card.bmp --size 101x75 || fail "testcard as BMP"
pxb convert card.y4m converted.bmp || fail convert
cmp card.bmp converted.bmp || fail "the card and its conversion differ"
pxb convert card.y4m card.i420 || fail "convert to raw frames"
expect "$(wc -c <card.i420)" $((3 * (101 * 75 + 2 * 51 * 38)))
pxb convert card.i420 back.bmp --size 101x75 && cmp card.bmp back.bmp || fail "raw frames"
pxb resize card.i420 half.bmp --in-size 101x75 --size 51x38 --mode shrink --frame 1 \
    --from-rect 0,0,100,74 --to-rect 1,1,51,38 || fail resize
expect "$(pxb info half.bmp | grep -c '^size        51 x 38')" 1
pxb convert card.y4m drift.bmp --unpadded && ! cmp -s card.bmp drift.bmp || fail "--unpadded"
expect "$(pxb info card.y4m | grep -c '^frames      3, 25 a second')" 1
pxb flip card.y4m back.y4m --vertical && pxb flip back.y4m again.i420 --vertical &&
    head -c $((101 * 74)) card.i420 | cmp -n $((101 * 74)) - again.i420 || fail "flip of a video"
pxb testcard even.y4m --size 100x76 --frames 2 && pxb convert even.y4m even.i420 &&
    pxb rotate even.y4m turned.y4m --angle 90 && pxb info turned.y4m | grep -q "size  *76 x 100" &&
    pxb rotate turned.y4m back.i420 --angle 270 && cmp even.i420 back.i420 ||
    fail "a video turned there and back"
pxb rotate card.bmp left.bmp --angle -30 --size 120x110 && pxb info left.bmp |
    grep -q "size  *120 x 110" || fail "rotate by -30"
pxb --version | grep -qE '^pxb [0-9.]+.?$' || fail "--version"
for command in "" testcard info convert channel resize rotate flip blend; do
    pxb $command --help | grep -q "^Usage: pxb" || fail "$command --help"
done

if pxb testcard try.png 2>/dev/null; then
    rm try.png
else
    pxb convert --help | cat - <(pxb --help) | grep -i png && fail "help offers PNG, which is missing"
fi

expect "$(pxb | head -c 4)" "pxb:"
refused "command: convrt: is not known; did you mean convert?" convrt card.y4m
refused "--frob" convert card.y4m out.bmp --frob
refused "OUT" convert card.y4m
refused "--size: 0x4" testcard out.y4m --size 0x4
refused "--size: 65536x65536x2" testcard out.y4m --size 65536x65536x2
refused "size: 65536x65536" testcard out.y4m --size 65536x65536
refused "--format: YUV9" info card.i420 --size 4x4 --format YUV9
refused "--mode: cubic: is not one of 0 nearest" resize card.bmp out.bmp --size 9x9 --mode cubic
pxb convert card.y4m card.rgb24
refused "--mode: 6 (shrink)" resize card.rgb24 out.bmp --in-size 101x75 --size 202x150 --mode 6 --frame 1
refused "--to-rect: 0,0,9: should be L,T,R,B" resize card.bmp out.bmp --size 9x9 --mode 1 --to-rect 0,0,9
refused "--size is required" resize card.bmp out.bmp --mode 1
refused "--channel: 6 is not a whole number from 1 to 5" channel card.bmp out.bmp --channel 6
refused "--frame: -1 is not a whole number from 0 to 9223372036854775807" convert card.y4m out.bmp --frame -1
refused "--at: 7" blend card.y4m card.bmp out.y4m --at 7
refused "--horizontal" flip card.y4m out.y4m
refused "--vertical" flip card.y4m out.y4m --horizontal --vertical
refused "--rect: 0,0,102,75" flip card.y4m out.y4m --vertical --rect 0,0,102,75
refused "--angle" rotate card.bmp out.bmp
refused "--angle" rotate card.bmp out.bmp --angle 30.5
refused "--frames: 3" testcard out.bmp --frames 3
refused "--threads" convert card.y4m out.bmp --threads 0
refused "--quality" testcard out.bmp --quality 5
refused "--range: wide" info card.y4m --range wide
refused "card.y4m: size: 101x75 I420: more pixels than --max-pixels 7574" info card.y4m --max-pixels 7574
refused "absent?file.y4m: open" info $'absent\nfile.y4m'
printf 'YUV4MPEG2 W4 H4 C4\00044\n' >zero.y4m
refused "header C: 4?44: is not one of" info zero.y4m
printf 'YUV4MPEG2 W4 H4 XA=\033[31m\302\233\377-\303\251\n' >colors.y4m
pxb info colors.y4m >info.txt
expect "$(LC_ALL=C tr -d ' -~\n' <info.txt | od -An -tx1)" " c3 a9"
rm zero.y4m colors.y4m info.txt
pxb testcard $'\u0141\u65e5.bmp' --size 2x2 && pxb info $'\u0141\u65e5.bmp' >/dev/null &&
    mv $'\u0141\u65e5.bmp' name.bmp || fail "a name of many alphabets"

if [ -z "$runner" ]; then
    head -c 30000 card.y4m >short.y4m
    pxb info card.bmp short.y4m card.i420 --size 101x75 >info.txt 2>"$message"
    expect "$? $(grep -c ^type info.txt) $(wc -l <"$message")" "2 1 2"
    pxb testcard card.any --type 5 --size 9x9 && pxb testcard card.pam --type PAM --size 9x9 ||
        fail "types by other names"
    expect "$(wc -c <card.any)" $((81 + 2 * 25))
    sed '1s/ Ip / It /' card.y4m >fields.y4m
    pxb convert fields.y4m fields.bmp 2>"$message"
    expect "$? $(cat "$message")" \
        "0 pxb: note: fields.bmp: the two fields of its 4:2:0 frames are taken for one picture"
    printf 'P7\nWIDTH 1\nHEIGHT 1\nDEPTH 4\nMAXVAL 99\nENDHDR\n1234' >alpha.pam
    pxb convert alpha.pam alpha.ppm 2>"$message"
    expect "$? $(cat "$message")" "0 pxb: note: alpha.ppm: its alpha is lost"
    rm -f short* info.txt card.pam card.any fields* alpha*

    pxb testcard - --type y4m --size 101x75 --frames 3 | cmp - card.y4m ||
        fail "card on standard output"
    pxb convert - - --type bmp <card.y4m | cmp - card.bmp || fail "standard input"
    pxb convert - - --type raw --size 101x75 --format I420 <card.i420 | cmp - card.i420 ||
        fail "raw frames on standard input"
    for command in "testcard - --type bmp" "convert card.y4m - --type raw" "info card.y4m" \
        --help; do
        pxb $command >/dev/full 2>"$message"
        expect "$command on a full device: $? $(grep -c '^pxb: standard output: w' "$message")" \
            "$command on a full device: 2 1"
        pxb $command >&- 2>/dev/null
        expect "$command without standard output: $?" "$command without standard output: 2"
    done
    pxb testcard - --type bmp 2>"$message" | true
    expect "closed pipe: ${PIPESTATUS[0]} $(wc -l <"$message")" "closed pipe: 2 1"
    mkfifo pipe
    timeout 20 cat pipe >piped.bmp & reader=$!
    pxb testcard pipe --type bmp --size 101x75 && wait $reader && cmp piped.bmp card.bmp ||
        fail "card into a pipe"
    [ -p pipe ] || fail "a pipe was replaced"
    ln -s card.i420 link.i420
    pxb testcard link.i420 --size 2x2 && [ -L link.i420 ] ||
        fail "a link was replaced"
    expect "$(wc -c <card.i420)" 6
    ln -s behind.bmp dangling.bmp
    pxb testcard dangling.bmp --size 2x2 && [ -L dangling.bmp ] && [ -f behind.bmp ] ||
        fail "a link to nothing was not followed"
    long=$(printf 'x%.0s' $(seq 251)).bmp
    pxb testcard "$long" --size 2x2 && rm "$long" || fail "a name of 255 letters"
    chmod 6751 card.bmp && pxb testcard card.bmp --size 2x2
    expect "$(stat -c %a card.bmp)" 751
    (touch pxb-$BASHPID-0.tmp; exec "$program" testcard card.bmp --size 2x2) ||
        fail "what another program of the same number left is in the way"
    rm pxb-*-0.tmp
    (ulimit -f 1; refused "large.bmp: write: File too large" testcard large.bmp)

    pxb convert --help | grep -q "for each processor" && threads="--threads 2"
    pxb testcard large.y4m --frames 2
    frame_bytes=$((768 * 576 * 3 / 2))

    # A terminal is told of progress after half a second, and nothing else is.
    for terminal in "script -qec" "bash -c"; do
        { cat large.y4m; sleep 0.6; tail -c $((frame_bytes + 6)) large.y4m; } >pipe &
        timeout 20 $terminal "'$program' convert pipe out.i420 $threads" /dev/null </dev/null \
            >"$message" 2>&1
        expect "$terminal: $? $(grep -c "[23] frames, .* a second" "$message")" \
            "$terminal: 0 $([ "$terminal" = "bash -c" ]; echo $?)"
        expect "$(wc -c <out.i420)" $((3 * frame_bytes))
    done

    # Nobody else may read what shall replace a private file.
    touch out.y4m && chmod 600 out.y4m
    for signal in TERM QUIT XCPU; do
        env --default-signal=$signal "$program" convert - out.y4m $threads <pipe & writer=$!
        stopped_by kill -$signal $writer
    done
else
    mkfifo pipe && touch out.y4m && pxb testcard large.y4m --frames 2
    $runner "$program" convert pipe out.y4m & writer=$!
    stopped_by pkill -KILL -P $writer
fi
[ $failures = 0 ] && echo "all passed"
exit $((failures != 0))
