# Draws what orvalo-bench-compressors writes, as SVG files for the site:
#     orvalo-bench-compressors plots FOLDER
#     cd FOLDER && gnuplot -e "pictures='SITE/pictures'" plots.gp
set datafile separator "\t"
set terminal svg size 760,400 font "sans-serif,13" background "#ffffff" dynamic
set key outside right top Left reverse noenhanced
set grid linecolor "#d8dce0"
set border 3 linecolor "#50585f"
set tics nomirror
set linetype 1 linecolor "#0f8f7c" linewidth 3
set linetype 2 linecolor "#7fcdbf" linewidth 2
set linetype 3 linecolor "#2a6f97" linewidth 2
set linetype 4 linecolor "#003f36" linewidth 2
set linetype 5 linecolor "#d1495b" linewidth 1.5
set linetype 6 linecolor "#edae49" linewidth 1.5
set linetype 7 linecolor "#8d6cab" linewidth 1.5
set linetype 8 linecolor "#7a7a7a" linewidth 1.5
plotted(name) = pictures . "/compressors-" . name . ".svg"

set output plotted("curve")
set xlabel "level in, dB"
set ylabel "level out, dB"
set xrange [-50:0]
set yrange [-50:0]
plot for [i=2:9] "curve.dat" using 1:i with lines title columnheader(i)

set ylabel "gain from start to end, in parts of the change"
set xlabel "ms"
set yrange [-0.1:1.2]
set xrange [-5:60]
set output plotted("attack")
part(i, file, step) = sprintf("awk -F'\\t' -v c=%d 'NR==2{f=$c} {r[NR]=$c; x[NR]=$1} END{print \"x\\t\" r[1]; for(n=2;n<=NR;n+=%d) print x[n] \"\\t\" (r[n]-f)/(r[NR]-f)}' %s", i, step, file)
plot for [i=2:9] "<" . part(i, "attack.dat", 12) using 1:2 with lines title columnheader(2)
set output plotted("release")
set xrange [-20:500]
plot for [i=2:9] "<" . part(i, "release.dat", 60) using 1:2 with lines title columnheader(2)

set output plotted("thd")
set xlabel "Hz"
set ylabel "THD at 0.1/45 ms, %"
set logscale xy
set xrange [30:5000]
set yrange [0.00001:10]
set format y "%g"
plot for [i=2:9] "thd.dat" using 1:i with lines title columnheader(i)
unset logscale
set format y

set output plotted("alias")
set xlabel "kHz"
set ylabel "5 kHz at 0.1/45 ms, dB"
set xrange [0:24]
set yrange [-180:0]
plot for [i=2:9] "alias.dat" using 1:i with lines title columnheader(i)

set output plotted("overshoot")
set xlabel "level of the bursts, dB"
set ylabel "true peaks above -6 dB, dB"
set xrange [-12:6]
set yrange [-7:14]
plot for [i=2:9] "overshoot.dat" using 1:i with lines title columnheader(i)

set output plotted("link")
set xlabel "how much quieter the other channel is, dB"
set ylabel "gain beyond that of the louder one, dB"
set xrange [0:40]
set yrange [-0.1:0.1]
plot for [i=2:9] "link.dat" using 1:i with lines title columnheader(i)
