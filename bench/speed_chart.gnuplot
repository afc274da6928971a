# docs/performance.png and .svg from performance.dat, in the folder docs; `last` is its last column.
set datafile separator ","
set datafile missing "NaN"
set style data histograms
set style histogram clustered gap 1
set style fill solid 0.9 border -1
set key outside top center horizontal
set grid ytics
set ylabel "times as fast as the C library"
set logscale y 2
set yrange [0.25:64]
set xtics rotate by -35
set title "1000 elements, one run, best of many turns"
do for [kind in "png svg"] {
  if (kind eq "png") { set terminal pngcairo size 1400,560 font "Sans,11" } else { set terminal svg size 1400,560 font "Sans,11" }
  set output "performance.".kind
  plot for [column = 2:last] "performance.dat" using column:xtic(1) title columnheader(column)
}
