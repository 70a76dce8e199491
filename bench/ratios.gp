# Draws the ratios of the packed rows in cache: a bar for each family and order, a dark mark for each goal.
# Wants data and picture (file names) and what (the line that tells the level); data is written by bench.
stats data index 0:1 using 1 name "place" nooutput
stats data index 0:1 using 3 name "ratio" nooutput
stats data index 0:1 using 4 name "goal" nooutput
low = floor(log((ratio_min < 0.5 ? ratio_min : 0.5)) / log(2))
high = ceil(log(1.2 * (ratio_max > goal_max ? ratio_max : goal_max)) / log(2))

set terminal pngcairo size (place_max + 4) * 26 + 150, 820 noenhanced font "sans,11" background "#ffffff"
set output picture
set multiplot layout 2, 1 title what margins screen 0.08, 0.98, 0.09, 0.91 spacing 0, 0.13
set xrange [0 : place_max + 1]
set logscale y 2
set yrange [2.0**low : 2.0**high]
set border 2 lc rgb "#888888"
set tics nomirror scale 0.5 textcolor rgb "#444444"
set xtics scale 0 offset 0, 0.4
set ytics format "%gx"
set grid ytics lc rgb "#dddddd" lt 1
set boxwidth 0.8
set style fill solid 1.0 noborder
set key at graph 1, 1.09 right reverse Left horizontal samplen 1 width -2 textcolor rgb "#444444"
set ylabel "best alternative / library" textcolor rgb "#444444"
set arrow 1 from graph 0, first 1 to graph 1, first 1 nohead lc rgb "#444444" lw 1.2 front

type(i) = i == 0 ? "float" : "double"
missed(ratio, goal) = goal == goal && ratio < goal
# Bars stand on the line of 1: faster grows up, slower hangs down.
do for [i = 0:1] {
    set label 1 type(i) at graph 0, 1.06 left font ",13" textcolor rgb "#1d3557"
    if (i == 1) { unset key }
    plot data index i using 1:($3):($1 - 0.4):($1 + 0.4):(1):(missed($3, $4) ? 1 : $3):xtic(2) with boxxyerror lc rgb "#2a9d8f" title "goal reached", \
         data index i using 1:($3):($1 - 0.4):($1 + 0.4):(1):(missed($3, $4) ? $3 : 1) with boxxyerror lc rgb "#e76f51" title "under the goal", \
         data index i using ($1 - 0.45):4:(0.9):(0) with vectors nohead lc rgb "#1d3557" lw 2.5 title "goal", \
         data index 2 using 1:(2.0**low):2 with labels offset 0, -2.3 textcolor rgb "#1d3557" notitle
}
unset multiplot
