# SPDX-License-Identifier: MIT
# Usage: gnuplot -e "results='FOLDER'; images='FOLDER'" graphs.gp
# Draws what bench_report left in the results' folder.
set terminal svg size 1000,440 font 'sans-serif,13' background '#ffffff'
set style data histograms
set style histogram clustered gap 1
set style fill solid 0.9 noborder
set boxwidth 0.95
set grid ytics linecolor '#dddddd'
set border 3
set tics nomirror
set key outside top center horizontal
set bmargin 4
set yrange [0:*]

# Colours that stay apart in grey, too.
set linetype 1 linecolor '#222222'
set linetype 2 linecolor '#1b7837'
set linetype 3 linecolor '#bbbbbb'
set linetype 4 linecolor '#7fbf7b'
set linetype 5 linecolor '#af8dc3'
set linetype 6 linecolor '#e08214'

set output images.'/remosaic.svg'
set title 'Re-mosaic, natively: time by the traffic floor (rgb2bayer, at 4 to 22, is left out)'
mosaic = results.'/re-mosaic_from_rgb32_native.dat'
set yrange [0:4]
plot for [column in 'product scalar SSSE3'] mosaic using column:xticlabel(1) title columnheader, \
     mosaic using 'libyuv ARGBExtractAlpha' title columnheader, 1 linecolor '#222222' title 'traffic floor'

set output images.'/block_copy.svg'
set title 'Block copy under Wine: time by the C runtime''s memcpy'
set yrange [0:1.4]
plot results.'/mono8_copy_windows.dat' using 'product':xticlabel(1) title 'Mono8, product', \
     results.'/rgb24_copy_windows.dat' using 'product' title 'RGB24, product', 1 linecolor '#222222' title 'memcpy'

set output images.'/shift_copy.svg'
set title 'Raw8 shift copy, natively: time by one block of the same size'
set yrange [0:2]
plot for [column in 'product scalar SSSE3'] results.'/raw8_shift_copy_native.dat' using column:xticlabel(1) title columnheader, \
     1 linecolor '#222222' title 'one block'

set style data linespoints
set yrange [0:*]
set ylabel 'ms'

set output images.'/start_up_cameras.svg'
set title 'Under Wine, from loading the adapter to the first frame: by cameras'
set xlabel 'cameras of 40 keys'
plot for [column in '"together (ms)" "open all (ms)" "first frame (ms)"'] \
     results.'/start-up_by_cameras_windows.dat' using (real(stringcolumn(1))):column title columnheader

set output images.'/start_up_settings.svg'
set title 'Under Wine, from loading the adapter to the first frame: by settings'
set xlabel 'keys of one camera'
plot for [column in '"together (ms)" "open all (ms)" "first frame (ms)"'] \
     results.'/start-up_by_settings_windows.dat' using (real(stringcolumn(1))):column title columnheader
