# Seconds over triangles for the series that grow smoothly; see writePlotData in main.cpp for the columns.
set terminal pngcairo size 1000,520 font ",10"
set output image
set logscale xy
set datafile missing "NaN"
set format x "10^{%T}"
set format y "10^{%T}"
set xlabel "triangles in"
set key top left
set grid
set multiplot layout 1,2
set ylabel "seconds"
set title "two icospheres, union"
plot data index "icospheres, union" using 1:2 with linespoints lc rgb "gray40" title "plain reading", \
     data index "icospheres, union" using 1:3 with linespoints lc rgb "#1f77b4" title "1 thread", \
     data index "icospheres, union" using 1:4 with linespoints lc rgb "#0a3d62" title "2 threads", \
     data index "icospheres, union" using 1:5 with linespoints lc rgb "#d35400" title "CGAL"
unset ylabel
set title "scans with turned copies of themselves, union"
plot data index "scans, union" using 1:2 with linespoints lc rgb "gray40" title "plain reading", \
     data index "scans, union" using 1:3 with linespoints lc rgb "#1f77b4" title "1 thread", \
     data index "scans, union" using 1:4 with linespoints lc rgb "#0a3d62" title "2 threads", \
     data index "scans, union" using 1:5 with linespoints lc rgb "#d35400" title "CGAL"
