#!/bin/bash
# usage: demo.sh PXB FOLDER
# What the library does, by the tool `pxb`: FOLDER/index.html shows pictures, each with the commands
# that made it. At the end they are taken from the page again, run in an empty folder, and have to
# give the same pictures.
set -euo pipefail
PATH=$(dirname "$(realpath "$1")"):$PATH
mkdir -p "$2"
cd "$2"

# What the commands start from, beside the test cards that pxb paints.

# Hard edges and soft ones in all colours: what 4:2:0 keeps and what it does not.
perl -e '
    my ($w, $h) = (300, 220);
    sub wave { 127.5 + 127.5 * cos shift }
    sub hue { map { wave($_[0] - $_ * 2.0944) } 0 .. 2 }
    sub color {
        my ($x, $y) = @_;
        my ($dx, $dy) = ($x - 79.5, $y - 79.5);
        my $r = sqrt($dx * $dx + $dy * $dy);
        return hue(atan2($dy, $dx)) if $r < 64;
        return (255) x 3 if $r < 68;
        if ($x >= 164 && $x < 284 && $y >= 16 && $y < 76) {
            my $width = 1 + int(($x - 164) / 30);
            return ($x / $width) % 2 ? (255, 0, 0) : (0, 0, 255);
        }
        if ($x >= 164 && $x < 284 && $y >= 86 && $y < 146) {
            my $width = 1 + int(($x - 164) / 30);
            return (($x + $y) / $width) % 2 ? (0, 200, 0) : (220, 0, 220);
        }
        return hue($x / 20) if $y >= 160 && $y < 176;
        return (wave($x * $x / 400)) x 3 if $y >= 184 && $y < 204;
        return (40 + $y / 4, 60 + $x / 8, 110);
    }
    print "P6 $w $h 255\n";
    for my $y (0 .. $h - 1) { print pack "C3", color($_, $y) for 0 .. $w - 1 }' >scene.ppm

# A logo with soft edges, B G R and alpha: a ring of changing colour around a white disc.
perl -e '
    for my $y (0 .. 119) { for my $x (0 .. 119) {
        my ($dx, $dy) = ($x - 59.5, $y - 59.5);
        my $r = sqrt($dx * $dx + $dy * $dy);
        my $alpha = (59 - $r) * 255 / 20;
        my $seen = $alpha < 0 ? 0 : $alpha > 255 ? 255 : $alpha;
        my @color = $r < 24 ? (255, 255, 255) : (255 - 2 * $x, 2 * $y, 128 + $x - $y);
        print pack "C4", @color, $seen;
    } }' >logo.rgb32

# Three groups Y0 U Y1 V a row, that is six pixels, from dark to light.
for _ in 1 2 3; do
    printf '\050\200\120\200\170\200\240\200\310\200\353\200'
done >groups.yuy2

# White, black, and alpha 0 to 255, 2 pixels each.
perl -e 'print "P2 512 48 255\n", join " ", map { int($_ % 512 / 2) } 0 .. 512 * 48 - 1' >ramp.pgm
perl -e 'print "P3 512 48 255\n", "255 " x (3 * 512 * 48)' >white.ppm
perl -e 'print "P3 512 48 255\n", "0 " x (3 * 512 * 48)' >black.ppm
inputs=(scene.ppm logo.rgb32 groups.yuy2 ramp.pgm white.ppm black.ppm)

escape() {
    sed 's/&/\&amp;/g; s/</\&lt;/g; s/>/\&gt;/g'
}
unescape() {
    sed 's/&lt;/</g; s/&gt;/>/g; s/&amp;/\&/g'
}
page() { cat >>index.html; }
commands() {  # shows the arguments, and runs each
    printf '<pre class="commands">%s</pre>\n' "$(printf '%s\n' "$@" | escape)" | page
    local command
    for command; do
        bash -euo pipefail -c "$command" >>log.txt
    done
}
picture() {  # FILE CAPTION COMMAND...: what the commands make
    page <<<"<figure>
<img src=\"$1\" alt=\"$2\">
<figcaption>$2</figcaption>"
    commands "${@:3}"
    page <<<"</figure>"
}
section() {  # TITLE, and the text from standard input
    { printf '<h2>%s</h2>\n<p>' "$1"; cat; printf '</p>\n<div class="row">\n'; } | page
}
end_section() { page <<<"</div>"; }
same() {  # the page says so
    cmp "$1" "$2" || { echo "demo.sh: $1 and $2 should be the same" >&2; exit 1; }
}

cat >index.html <<'END'
<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>PxbLib: what it does with pictures</title>
<style>
  :root { color-scheme: light dark; }
  body { margin: 0 auto; padding: 2rem 1.5rem 4rem; max-width: 60rem; line-height: 1.5;
         font-family: system-ui, sans-serif; }
  h1 { margin: 0; font-size: 1.9rem; }
  h2 { margin: 3rem 0 .5rem; font-size: 1.25rem; }
  p { max-width: 44rem; margin: .5rem 0 1rem; }
  /* One pixel of a picture is one of the page: nothing here sets a width or a height. */
  img { display: block; max-width: none; image-rendering: pixelated; }
  figure { margin: 0; width: min-content; min-width: 14rem; }
  figcaption { padding-top: .4rem; font-size: .85rem; opacity: .75; }
  .row { display: flex; flex-wrap: wrap; gap: 1.5rem 1rem; align-items: flex-start; }
  pre { padding: .5rem .7rem; border-radius: 4px; font-size: .75rem; line-height: 1.4;
        background: rgb(128 128 128 / .15); overflow-x: auto; }
  .commands { margin: .4rem 0 0; white-space: pre-wrap; overflow-wrap: anywhere; }
</style>
<h1>What PxbLib does with pictures</h1>
<p>Every picture is shown pixel for pixel, and browsers are told not to smooth; what is enlarged here
was enlarged by the library. Below each picture are the commands that made it from what stands above.
They work as pasted, from top to bottom, in the folder of this page, with the tool <code>pxb</code> on
the PATH (after <code>./dev demo</code>: <code>export PATH=$PWD/../linux-x64:$PATH</code>). The script
that wrote this page ran them once more in a folder with nothing but the inputs, and got the same
pictures.</p>
END
: >log.txt

section "Before, after, difference" <<'END'
RGB24 becomes 4:2:0 video, as cameras and codecs have it, and is brought back: PxbColorSpaceConv, once
there and once back. Brightness is kept for every pixel, colour once for a block of two by two: red and
blue stripes of one pixel become purple ones. The difference is four times as strong as it is, around
grey, which means none.
END
picture before.png "Before: RGB24, 300 x 220" "pxb convert scene.ppm before.png"
picture after.png "After: by way of I420" \
    "pxb convert before.png scene.i420" \
    "pxb convert scene.i420 after.png --size 300x220"
# shellcheck disable=SC2016
picture difference.png "Difference: 128 + 4 (after - before)" \
    "pxb convert before.png before.rgb24" \
    "pxb convert after.png after.rgb24" \
    'perl -0777 -ne '\''push @f, $_; END { print map { $d = 128 + 4 * (vec($f[1], $_, 8) - vec($f[0], $_, 8)); chr($d < 0 ? 0 : $d > 255 ? 255 : $d) } 0 .. length($f[0]) - 1 }'\'' before.rgb24 after.rgb24 >difference.rgb24' \
    "pxb convert difference.rgb24 difference.png --size 300x220"
end_section

section "The nine formats" <<'END'
A part of that picture in each of them: on the left as it looks, on the right its bytes in memory, row
by row, each byte a grey pixel. Packed formats show stripes, planes lie below one another.
END
format_row() {  # NAME CAPTION BYTES_A_ROW ROWS COMMAND...
    local name=$1 file=part.${1,,} bytes
    bytes="$3x$4"
    picture "$name.png" "$2" "${@:5}"
    picture "$name-bytes.png" "Bytes of $name: $3 a row, $4 rows" \
        "pxb convert $file $name-bytes.png --size $bytes --format RGB8"
}
size="--size 144x96"
format_row RGB24 "1, RGB24: B G R, 24 bits" 432 96 \
    "pxb resize before.png RGB24.png $size --mode nearest --from-rect 100,20,244,116" \
    "pxb convert RGB24.png part.rgb24"
format_row RGB32 "2, RGB32: B G R X, 32 bits" 576 96 \
    "pxb convert RGB24.png part.rgb32" "pxb convert part.rgb32 RGB32.png $size"
format_row YV12 "3, YV12: planes Y, V, U, 12 bits" 144 144 \
    "pxb convert RGB24.png part.yv12" "pxb convert part.yv12 YV12.png $size"
format_row YUY2 "4, YUY2: Y0 U Y1 V, 16 bits" 288 96 \
    "pxb convert RGB24.png part.yuy2" "pxb convert part.yuy2 YUY2.png $size"
format_row I420 "5, I420: planes Y, U, V, 12 bits" 144 144 \
    "pxb convert RGB24.png part.i420" "pxb convert part.i420 I420.png $size"
format_row RGB8 "6, RGB8: grey, 8 bits; luma by PxbChannelGet" 144 96 \
    "pxb channel RGB24.png RGB8.png --channel 5" "pxb convert RGB8.png part.rgb8"
format_row YUV422 "7, YUV422: planes Y, U, V, 16 bits" 144 192 \
    "pxb convert part.yuy2 part.yuv422 $size" "pxb convert part.yuv422 YUV422.png $size"
format_row AYUV32 "8, AYUV32: A Y U V, 32 bits" 576 96 \
    "pxb convert part.rgb32 part.ayuv32 $size" \
    "pxb convert part.ayuv32 AYUV32.bmp --to RGB32 $size" "pxb convert AYUV32.bmp AYUV32.png"
format_row NV12 "9, NV12: plane Y, plane of U V pairs, 12 bits" 144 144 \
    "pxb convert part.rgb32 part.nv12 $size" \
    "pxb convert part.nv12 NV12.bmp --to RGB32 $size" "pxb convert NV12.bmp NV12.png"
end_section

section "Odd sizes" <<'END'
4:2:0 frames hold whole blocks. The tool pads a picture of odd size by repeating its last column and
row, and crops the result. A program that tells the library of an odd width gets the second picture:
only whole pairs of columns are converted, but rows advance by the full width, so brightness starts one
pixel further left in each further pair of rows, and colour, which has planes of its own, does not.
Programs depend on those bytes; give the library even sizes.
END
picture odd.png "333 x 250, padded: as it should be" \
    "pxb testcard odd.y4m --size 333x250" "pxb convert odd.y4m odd.png"
picture odd_drift.png "333 x 250, told to the library: colour slides off, and a wedge stays black" \
    "pxb convert odd.y4m odd_drift.png --unpadded"
edge="--size 384x288 --mode nearest --from-rect 119,77,143,95"
picture edge_before.png "The bottom right corner of another picture, 143 x 95 pixels of RGB24: 24 x 18 of \
them, each 16 times as large" \
    "pxb resize before.png cut.png --size 143x95 --mode nearest --from-rect 100,20,243,115" \
    "pxb resize cut.png edge_before.png $edge"
picture edge_after.png "The same by way of I420: blocks of two by two share a colour; the last column \
and row are half a block, and keep more of their own" \
    "pxb convert cut.png cut.y4m" "pxb convert cut.y4m cut_back.png" \
    "pxb resize cut_back.png edge_after.png $edge"
end_section

section "Something that moves" <<'END'
Video of 24 frames with a logo over each, as an animated picture. Frames are read, worked on and written
by several threads, in order; a pattern such as marked-%02d.png names one file for each.
END
picture moving.png "24 frames, 12 a second" \
    "pxb convert logo.rgb32 logo.png --size 120x120" \
    "pxb testcard moving.y4m --size 288x216 --frames 24" \
    "pxb blend moving.y4m logo.png marked.y4m --at 0,96 --threads 2" \
    "pxb convert marked.y4m marked-%02d.png --threads 2" \
    "apngasm moving.png marked-00.png 1 12 -z0"
picture moving_turned.png "Each frame mirrored and turned by 180 degrees" \
    "pxb flip marked.y4m mirrored.y4m --horizontal" \
    "pxb rotate mirrored.y4m turned-%02d.png --angle 180" \
    "apngasm moving_turned.png turned-00.png 1 12 -z0"
end_section

section "What the camera delivers" <<'END'
Three planes: brightness for every pixel, and two colour differences, each once for a block of two by
two pixels. Grey in a colour plane means no colour.
END
picture card.png "I420 to RGB24 by PxbColorSpaceConv" \
    "pxb testcard card.y4m --size 448x336" "pxb convert card.y4m card.png"
picture y.png "Y, 448 x 336" \
    "pxb convert card.y4m card.i420" \
    "head -c 150528 card.i420 >y.rgb8" "pxb convert y.rgb8 y.png --size 448x336"
picture u.png "U, 224 x 168" \
    "head -c 188160 card.i420 | tail -c 37632 >u.rgb8" "pxb convert u.rgb8 u.png --size 224x168"
picture v.png "V, 224 x 168" \
    "tail -c 37632 card.i420 >v.rgb8" "pxb convert v.rgb8 v.png --size 224x168"
end_section
commands "pxb info card.y4m >info.txt"
printf '<pre>%s</pre>\n' "$(escape <info.txt)" | page

section "What a screen needs" <<'END'
The same frame as RGB32, taken apart again with PxbChannelGet; channel 1 of an RGB24 picture is its grey,
0.59 G + 0.30 R + 0.11 B.
END
picture red.png "Red, channel 2" \
    "pxb convert card.y4m card.bmp --to RGB32" "pxb channel card.bmp red.png --channel 2"
picture green.png "Green, channel 3" "pxb channel card.bmp green.png --channel 3"
picture blue.png "Blue, channel 4" "pxb channel card.bmp blue.png --channel 4"
picture grey.png "Grey, channel 1 of RGB24" "pxb channel card.png grey.png --channel 1"
end_section

section "Larger" <<'END'
A detail of 48 x 36 pixels of the 4:2:0 frame, eight times as large by PxbResize; chroma is scaled by
itself, in its own size.
END
detail="--size 384x288 --from-rect 24,24,72,60"
large() {  # MODE CAPTION
    picture "large-$1.png" "$2" "pxb resize card.y4m large-$1.png $detail --mode $1"
}
large nearest "Nearest: square pixels, brightness and colour each of its own size."
large bilinear "Bilinear: smooth edges, and nothing special at the border. Colour changes over twice \
the length of brightness, around the same edges. Half, bilinear-5 and shrink give the same here."
picture rgb-faded.png "Faded, of RGB32: as bilinear, with a black border. The centres of the \
outermost new pixels lie outside those of the outermost old ones; instead of repeating these, this \
mode blends to 0 within one new pixel, and stays there." \
    "pxb resize card.bmp rgb-faded.png $detail --mode faded"
large faded "Faded, of 4:2:0: 0 in all three planes is no black but green, and the chroma planes fade \
over their own, larger pixels. Half-faded gives the same here."
end_section
for mode in half bilinear-5 shrink half-faded; do
    # shellcheck disable=SC2086
    pxb resize card.y4m other.png $detail --mode $mode
    same large-"$([ $mode = half-faded ] && echo faded || echo bilinear)".png other.png
done

section "Smaller" <<'END'
All of a card of 768 x 576 as 320 x 240 pixels. No border fades where a picture shrinks.
END
small() {  # MODE CAPTION
    picture "small-$1.png" "$2" "pxb resize large.y4m small-$1.png --size 320x240 --mode $1"
}
picture small-nearest.png "Nearest: one pixel of about six. Rings appear that the card does not \
have, and thin lines are there or not." \
    "pxb testcard large.y4m --size 768x576" \
    "pxb resize large.y4m small-nearest.png --size 320x240 --mode nearest"
small bilinear "Bilinear: the four pixels around each centre, so thin lines become paler instead of \
vanishing, but rings remain. Faded and bilinear-5 give the same here."
small shrink "Shrink: four by four pixels weigh in. Fine rings and stripes become grey, letters \
softer. Half and half-faded give the same here."
end_section
for mode in faded bilinear-5 half half-faded; do
    pxb resize large.y4m other.png --size 320x240 --mode $mode
    same small-"$([[ $mode = half* ]] && echo shrink || echo bilinear)".png other.png
done
rm other.png

section "Parts" <<'END'
A rectangle of the source goes onto a rectangle of the destination, the rest of which the tool leaves
black.
END
picture scaled_part.png "The whole card onto 304 x 228 pixels" \
    "pxb resize card.png scaled_part.png --size 384x288 --mode bilinear --to-rect 40,30,344,258"
end_section

section "Turns" <<'END'
PxbRotate takes any whole angle. RGB pictures turn about their centre; a pixel that falls between four
others is interpolated, borders that are cut fade, and what no pixel falls on stays as it was, here
black. The picture keeps the size that the caller gave it, so its corners are lost. At 90 degrees RGB
turns counter-clockwise and 4:2:0 video clockwise. It is the same rotation, used in opposite ways: for
RGB it leads from each new pixel back to its place in the old picture, for video from each old pixel to
its new place. Programs depend on both; 270 degrees of one are 90 of the other.
END
picture turned_30.png "RGB24 by 30 degrees" \
    "pxb resize card.png card_small.png --size 288x216 --mode half" \
    "pxb rotate card_small.png turned_30.png --angle 30"
picture turned_180.png "RGB24 by 180" "pxb rotate card_small.png turned_180.png --angle 180"
picture turned_90.png "RGB24 by 90" "pxb rotate card_small.png turned_90.png --angle 90"
picture turned_90_video.png "I420 by 90" \
    "pxb testcard small.y4m --size 288x216" "pxb rotate small.y4m turned_90_video.png --angle 90"
end_section

section "Mirrors" <<'END'
In place, the whole frame or a part of it. 4:2:0 video is mirrored as it is, luma and chroma each in its
plane. YUY2 stores pixels by twos, as groups Y0 U Y1 V. Mirrored, groups change places, and the two
brightnesses within each as well. Six pixels are three groups, and the middle one has no partner: it
stays as it is, the darker pixel still on its left. Programs depend on that, so it is kept; give widths
of a multiple of 4 where it matters.
END
picture left_to_right.png "Left to right by PxbFliphorizontal" \
    "pxb flip small.y4m left_to_right.png --horizontal"
picture upside_down.png "Top to bottom by PxbFlipvertical" \
    "pxb flip small.y4m upside_down.png --vertical"
picture part.png "A part, left to right" \
    "pxb flip small.y4m part.png --horizontal --rect 72,54,216,162"
picture groups.png "Three groups of YUY2, 48 times as large" \
    "pxb convert groups.yuy2 groups.bmp --size 6x3" \
    "pxb resize groups.bmp groups.png --size 288x144 --mode nearest"
picture groups_mirrored.png "Mirrored: the two pixels in the middle did not change places" \
    "pxb flip groups.yuy2 mirrored.yuy2 --size 6x3 --horizontal" \
    "pxb convert mirrored.yuy2 mirrored.bmp --size 6x3" \
    "pxb resize mirrored.bmp groups_mirrored.png --size 288x144 --mode nearest"
end_section

section "A logo over the card" <<'END'
PxbAlphaBlend lays a picture over another of the same format. The logo's alpha fades over its outer 20
pixels; each picture below was blended in its own format. YUY2 and 4:2:0 keep chroma for pairs or blocks
of pixels, which shows only where colours meet sharply.
END
picture logo_alpha.png "The logo's alpha: white is seen, black is not" \
    "pxb channel logo.png logo_alpha.png --channel 1"
blend() {  # FORMAT CAPTION
    picture "blend_$1.png" "$2" \
        "pxb convert small.y4m small.${1,,}" \
        "pxb blend small.${1,,} logo.png blend_$1.png --size 288x216 --at 84,48"
}
blend RGB24 "RGB24, alpha in a plane"
blend RGB32 "RGB32, alpha in the fourth byte of each pixel"
blend YUY2 "YUY2, alpha in a plane"
blend YV12 "YV12, alpha in a plane"
blend I420 "I420: chroma takes the alpha of the top left of four pixels"
end_section

section "254 for alpha 255" <<'END'
White over black, alpha 0 to 255 from left to right. A sample d under s becomes ((256 - alpha) d + alpha
s) &gt;&gt; 8: the weights add up to 256, so that alpha 0 changes nothing and a shift divides. 255 is then
not quite all, and white ends at 254. Programs depend on these bytes.
END
picture ramp.png "Every alpha, 2 pixels wide" \
    "pxb blend black.ppm white.ppm ramp.png --alpha ramp.pgm"
end_section
pxb convert ramp.png ramp.rgb24
{
    printf '<pre>'
    for alpha in 0 1 2 64 128 192 254 255; do
        printf 'alpha %3d gives %3d\n' $alpha \
            "$(od -An -tu1 -j $((alpha * 6)) -N 1 ramp.rgb24)"
    done
    printf '</pre>\n</html>\n'
} | page

# As pasted, and from nothing else.
again=$(mktemp -d)
trap 'rm -rf "$again"' EXIT
cp "${inputs[@]}" "$again"
perl -0777 -ne 'print "$1\n" while m{<pre class="commands">(.*?)</pre>}gs' index.html |
    unescape >"$again/commands"
(cd "$again" && bash -eu commands </dev/null) >>log.txt
perl -ne 'print "$1\n" if /<img src="(.*?)"/' index.html >"$again/shown"
while read -r file; do same "$file" "$again/$file"; done <"$again/shown"
echo "pictures: $PWD"
echo "page:     $PWD/index.html"
