#!/bin/bash
# usage: demo.sh PXB FOLDER
# What the library does, by the tool `pxb`: a test card as 4:2:0 video becomes pictures, which
# FOLDER/index.html shows with the commands that made them.
set -euo pipefail
pxb=$(realpath "$1")
mkdir -p "$2"
cd "$2"
width=768 height=576

log=()
run() {  # runs the tool, and keeps the command for the page
    log+=("pxb $*")
    "$pxb" "$@"
}

run testcard card.y4m --size ${width}x$height
run convert card.y4m card.png
run convert card.y4m card.bmp --to RGB32
for channel in 2:red 3:green 4:blue; do
    run channel card.bmp ${channel#*:}.png --channel ${channel%:*}
done
run channel card.png grey.png --channel 1
run testcard odd.y4m --size 333x250
run convert odd.y4m odd.png
run convert odd.y4m odd_drift.png --unpadded
run info card.y4m >info.txt
run flip card.y4m left_to_right.png --horizontal
run flip card.y4m upside_down.png --vertical
run flip card.y4m part.png --horizontal --rect 192,144,576,432

# Three groups Y0 U Y1 V a row, that is six pixels, from dark to light.
for _ in 1 2 3; do
    printf '\050\200\120\200\170\200\240\200\310\200\353\200'
done >groups.yuy2
"$pxb" convert groups.yuy2 groups.png --size 6x3
"$pxb" flip groups.yuy2 groups_mirrored.png --size 6x3 --horizontal

# A logo with soft edges, B G R and alpha: a ring of changing colour around a white disc.
perl -e '
    for my $y (0 .. 239) { for my $x (0 .. 239) {
        my ($dx, $dy) = ($x - 119.5, $y - 119.5);
        my $r = sqrt($dx * $dx + $dy * $dy);
        my $alpha = (118 - $r) * 255 / 40;
        my $seen = $alpha < 0 ? 0 : $alpha > 255 ? 255 : $alpha;
        my @color = $r < 48 ? (255, 255, 255) : (255 - $x, $y, 128 + ($x - $y) / 2);
        print pack "C4", @color, $seen;
    } }' >logo.rgb32
run convert logo.rgb32 logo.png --size 240x240
for format in RGB24 RGB32 YUY2 YV12 I420; do
    file=card.$(tr '[:upper:]' '[:lower:]' <<<$format)
    run convert card.y4m "$file"
    run blend "$file" logo.png blend_$format.png --size ${width}x$height --at 264,168
done
run channel logo.png logo_alpha.png --channel 1

# White over black through alpha 0 to 255, 2 pixels each.
perl -e 'print "P2 512 48 255\n", join " ", map { int($_ % 512 / 2) } 0 .. 512 * 48 - 1' >ramp.pgm
perl -e 'print "P3 512 48 255\n", "255 " x (3 * 512 * 48)' >white.ppm
perl -e 'print "P3 512 48 255\n", "0 " x (3 * 512 * 48)' >black.ppm
run blend black.ppm white.ppm ramp.png --alpha ramp.pgm
"$pxb" convert ramp.png ramp.rgb24
sums() {  # what alpha $1... gives
    local alpha
    for alpha; do
        printf 'alpha %3d gives %3d\n' "$alpha" \
            "$(od -An -tu1 -j $((alpha * 6)) -N 1 ramp.rgb24)"
    done
}
sums 0 1 2 64 128 192 254 255 >ramp.txt

run rotate card.png turned_30.png --angle 30
run rotate card.png turned_180.png --angle 180
run rotate card.png turned_90.png --angle 90
run rotate card.y4m turned_90_video.png --angle 90

# The planes follow one another in a raw frame: Y, then U and V of half the width and height.
luma=$((width * height)) chroma=$((width * height / 4))
half_width=$((width / 2)) half_height=$((height / 2))
head -c $luma card.i420 >y.raw
head -c $((luma + chroma)) card.i420 | tail -c $chroma >u.raw
tail -c $chroma card.i420 >v.raw
"$pxb" convert y.raw y.png --format RGB8 --size ${width}x$height
"$pxb" convert u.raw u.png --format RGB8 --size ${half_width}x$half_height
"$pxb" convert v.raw v.png --format RGB8 --size ${half_width}x$half_height
rm y.raw u.raw v.raw

# Scaling a detail eight times as large, and all of the card reduced, in every mode.
modes=(nearest bilinear faded half half-faded bilinear-5 shrink)
for mode in "${modes[@]}"; do
    run resize card.y4m large-$mode.png --size 384x288 --mode $mode --from-rect 40,56,88,92
    run resize card.y4m small-$mode.png --size 320x240 --mode $mode
done
run resize card.bmp rgb-faded.png --size 384x288 --mode faded --from-rect 40,56,88,92
same() {  # the page says so
    cmp "$1" "$2" || { echo "demo.sh: $1 and $2 should be the same" >&2; exit 1; }
}
for mode in half bilinear-5 shrink; do same large-bilinear.png large-$mode.png; done
same large-faded.png large-half-faded.png
for mode in faded bilinear-5; do same small-bilinear.png small-$mode.png; done
for mode in half half-faded; do same small-shrink.png small-$mode.png; done
run resize card.png scaled_part.png --size 384x288 --mode bilinear --to-rect 40,40,344,268

figure() {  # FILE CAPTION [COMMAND]
    printf '<figure><a href="%s"><img src="%s" alt="%s"></a>\n' "$1" "$1" "$2"
    printf '<figcaption>%s%s</figcaption></figure>\n' "$2" "${3:+<br><code>$3</code>}"
}
shown() {  # FILE CAPTION: with the command that wrote the file, the first that names it
    figure "$1" "$2" "$(printf '%s \n' "${log[@]}" | grep -m 1 -F " $1 " | escape)"
}
escape() {
    sed 's/&/\&amp;/g; s/</\&lt;/g; s/>/\&gt;/g'
}

cat >index.html <<END
<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>PxbLib: a camera frame becomes a picture</title>
<style>
  :root { color-scheme: light dark; }
  body { margin: 0 auto; padding: 2rem 1.5rem 4rem; max-width: 60rem; line-height: 1.5;
         font-family: system-ui, sans-serif; }
  h1 { margin: 0; font-size: 1.9rem; }
  h2 { margin: 3rem 0 .5rem; font-size: 1.25rem; }
  p { max-width: 44rem; margin: .5rem 0 1rem; }
  img { display: block; width: 100%; height: auto; border-radius: 4px; }
  figure { margin: 0; }
  figcaption { padding-top: .4rem; font-size: .85rem; opacity: .75; }
  .row { display: grid; gap: 1rem; }
  .channels { grid-template-columns: repeat(auto-fit, minmax(12rem, 1fr)); }
  .planes { grid-template-columns: 2fr 1fr; }
  .planes > div { display: grid; gap: 1rem; }
  .groups { grid-template-columns: 1fr 1fr; max-width: 40rem; }
  .groups img { image-rendering: pixelated; border-radius: 0; }
  .turns { grid-template-columns: 4fr 4fr 3fr 3fr; align-items: end; }
  .odd { grid-template-columns: repeat(auto-fit, 333px); }
  .large { grid-template-columns: repeat(auto-fit, 384px); }
  .reduced { grid-template-columns: repeat(auto-fit, 320px); }
  .large img, .reduced img { width: auto; max-width: 100%; border-radius: 0;
                           image-rendering: pixelated; }
  pre { padding: 1rem; overflow-x: auto; border-radius: 4px; font-size: .85rem;
        background: rgb(128 128 128 / .15); }
</style>
<h1>A camera frame becomes a picture</h1>
<p>PxbLib took a ${width} x $height frame of 4:2:0 video, I420, and made RGB24 of it. Everything
below was written by the tool <code>pxb</code>, which calls the library through its C header.</p>
$(shown card.png "I420 to RGB24 by PxbColorSpaceConv")

<h2>What the camera delivers</h2>
<p>Three planes: brightness for every pixel, and two colour differences, each once for a block of
two by two pixels. Grey in a colour plane means no colour.</p>
<div class="row planes">
$(figure y.png "Y, ${width} x $height")
<div>
$(figure u.png "U, $half_width x $half_height")
$(figure v.png "V, $half_width x $half_height")
</div>
</div>
<pre>$(escape <info.txt)</pre>

<h2>What a screen needs</h2>
<p>The same frame as RGB32, taken apart again with PxbChannelGet; channel 1 of an RGB24 picture is
its grey, 0.59 G + 0.30 R + 0.11 B.</p>
<div class="row channels">
$(shown red.png "Red, channel 2")
$(shown green.png "Green, channel 3")
$(shown blue.png "Blue, channel 4")
$(shown grey.png "Grey, channel 1 of RGB24")
</div>

<h2>Odd sizes</h2>
<p>4:2:0 frames hold whole blocks. The tool pads a picture of odd size by repeating its last column
and row, and crops the result. A program that tells the library of an odd width gets the second
picture: only whole pairs of columns are converted, but rows advance by the full width, so brightness
starts one pixel further left in each further pair of rows, and colour, which has planes of its own,
does not. Programs depend on those bytes; give the library even sizes.</p>
<div class="row odd">
$(shown odd.png "333 x 250, padded: as it should be")
$(shown odd_drift.png "333 x 250, told to the library: colour slides off, and a wedge stays black")
</div>

<h2>Larger</h2>
<p>A detail of 48 x 36 pixels of the 4:2:0 frame, eight times as large by PxbResize; chroma is scaled
by itself, in its own size.</p>
<div class="row large">
$(shown large-nearest.png "Nearest: square pixels, brightness and colour each of its own size.")
$(shown large-bilinear.png "Bilinear: smooth edges, and nothing special at the border. Colour \
changes over twice the length of brightness, around the same edges. Half, bilinear-5 and shrink give \
the same here.")
$(shown rgb-faded.png "Faded, of RGB32: as bilinear, with a black border. The centres of the \
outermost new pixels lie outside those of the outermost old ones; instead of repeating these, this \
mode blends to 0 within one new pixel, and stays there.")
$(shown large-faded.png "Faded, of 4:2:0: 0 in all three planes is no black but green, and the \
chroma planes fade over their own, larger pixels. Half-faded gives the same here.")
</div>

<h2>Smaller</h2>
<p>All of the card as 320 x 240 pixels, actual size. No border fades where a picture shrinks.</p>
<div class="row reduced">
$(shown small-nearest.png "Nearest: one pixel of about six. Rings appear that the card does not \
have, and thin lines are there or not.")
$(shown small-bilinear.png "Bilinear: the four pixels around each centre, so thin lines become \
paler instead of vanishing, but rings remain. Faded and bilinear-5 give the same here.")
$(shown small-shrink.png "Shrink: four by four pixels weigh in. Fine rings and stripes become grey, \
letters softer. Half and half-faded give the same here.")
</div>

<h2>Parts</h2>
<p>A rectangle of the source goes onto a rectangle of the destination, the rest of which the tool
leaves black.</p>
<div class="row large">
$(shown scaled_part.png "The whole card onto 304 x 228 pixels.")
</div>

<h2>Turns</h2>
<p>PxbRotate takes any whole angle. RGB pictures turn about their centre; a pixel that falls between
four others is interpolated, borders that are cut fade, and what no pixel falls on stays as it was,
here black. The picture keeps the size that the caller gave it, so its corners are lost.</p>
<p>At 90 degrees RGB turns counter-clockwise and 4:2:0 video clockwise. It is the same rotation, used
in opposite ways: for RGB it leads from each new pixel back to its place in the old picture, for video
from each old pixel to its new place. Programs depend on both; 270 degrees of one are 90 of the
other.</p>
<div class="row turns">
$(shown turned_30.png "RGB24 by 30 degrees")
$(shown turned_180.png "RGB24 by 180")
$(shown turned_90.png "RGB24 by 90")
$(shown turned_90_video.png "I420 by 90")
</div>

<h2>Mirrors</h2>
<p>In place, the whole frame or a part of it: here 192,144 to 576,432. 4:2:0 video is mirrored as it
is, luma and chroma each in its plane.</p>
<div class="row channels">
$(shown left_to_right.png "Left to right by PxbFliphorizontal")
$(shown upside_down.png "Top to bottom by PxbFlipvertical")
$(shown part.png "A part, left to right")
</div>
<p>YUY2 stores pixels by twos, as groups Y0 U Y1 V. Mirrored, groups change places, and the two
brightnesses within each as well. Six pixels are three groups, and the middle one has no partner:
it stays as it is, the darker pixel still on its left. Programs depend on that, so it is kept; give
widths of a multiple of 4 where it matters.</p>
<div class="row groups">
$(figure groups.png "Three groups of YUY2, enlarged")
$(figure groups_mirrored.png "Mirrored: the two pixels in the middle did not change places")
</div>

<h2>A logo over the card</h2>
<p>PxbAlphaBlend lays a picture over another of the same format. The logo's alpha fades over its
outer 40 pixels; each picture below was blended in its own format. YUY2 and I420 keep chroma for
pairs or blocks of pixels, which shows only where colours meet sharply.</p>
<div class="row channels">
$(shown logo_alpha.png "The logo's alpha: white is seen, black is not")
$(shown blend_RGB24.png "RGB24, alpha in a plane")
$(shown blend_RGB32.png "RGB32, alpha in the fourth byte of each pixel")
$(shown blend_YUY2.png "YUY2, alpha in a plane")
$(shown blend_YV12.png "YV12, alpha in a plane")
$(shown blend_I420.png "I420: chroma takes the alpha of the top left of four pixels")
</div>

<h2>254 for alpha 255</h2>
<p>White over black, alpha 0 to 255 from left to right. A sample d under s becomes ((256 - alpha) d
+ alpha s) &gt;&gt; 8: the weights add up to 256, so that alpha 0 changes nothing and a shift
divides. 255 is then not quite all, and white ends at 254. Programs depend on these bytes.</p>
$(shown ramp.png "Every alpha, 2 pixels wide")
<pre>$(cat ramp.txt)</pre>

<h2>Try it</h2>
<pre>$(printf '%s\n' "${log[@]}" | escape)</pre>
</html>
END
echo "pictures: $PWD"
echo "page:     $PWD/index.html"
