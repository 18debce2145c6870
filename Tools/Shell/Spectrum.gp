# gnuplot: the long-term spectrum before and after, and below it the difference. Called by ./run, which sets
# before, after (reports of SignalMeter), marks (lines of Hz and dB), picture (PNG to write) and rate (Hz).

set terminal pngcairo size 1200,800 font "DejaVu Sans,11"
set output picture
set multiplot layout 2,1 title "Brindle XEQ: long-term spectrum"
set logscale x
set lmargin 9
set rmargin 4
set xrange [20:rate/2 < 20000 ? rate/2 : 20000]
set xtics ("20" 20, "64" 64, "150" 150, "350" 350, "1k" 1000, "2k" 2000, "6k" 6000, "12k" 12000, "20k" 20000)
set grid xtics ytics lc rgb "#d8d8d8"
set key top right

set ylabel "dB"
stats after using 2 nooutput
set yrange [STATS_max-90:STATS_max+10]
plot before using 1:2 with lines lw 2 lc rgb "#8090a0" title "before", \
     after using 1:2 with lines lw 2 lc rgb "#c04010" title "after"

set xlabel "Hz (marks: the seven bands)"
set ylabel "change, dB"
# From -14 to 14, or as far as the curve and the gains go; silence on one side would make it endless.
set yrange [*:*]
difference = "< paste ".before." ".after." | grep -v '#'"
stats difference using ($4-$2) name "C" nooutput
stats marks using 2 name "M" nooutput
low = C_min < M_min ? C_min : M_min
high = C_max > M_max ? C_max : M_max
low = low < -12 ? (low < -58 ? -60 : floor(low - 2)) : -14
high = high > 12 ? (high > 58 ? 60 : ceil(high + 2)) : 14
set yrange [low:high]
set ytics 4
set xzeroaxis lt 1 lc rgb "#606060"
set key bottom right
plot difference using 1:($4-$2) with lines lw 2 lc rgb "#c04010" title "after - before", \
     marks using 1:2 with points pt 6 ps 2 lw 2 lc rgb "#204080" title "gain set (band and output)"
unset multiplot
