# Prints one line of a table from the figures of its runs. The variables are the arguments of row() in
# bench/measure.sh; ours and theirs are lists of figures.
function median(list,    all, n) {
    n = split(list, all)
    sort(all, n)
    return (all[int((n + 1) / 2)] + all[int(n / 2) + 1]) / 2
}
function sort(all, n,    i, j, value) {
    for (i = 1; i <= n; ++i) all[i] += 0
    for (i = 2; i <= n; ++i) {
        value = all[i]
        for (j = i - 1; j >= 1 && all[j] > value; --j) all[j + 1] = all[j]
        all[j + 1] = value
    }
}
function figure(value) {
    return value >= 1000 ? sprintf("%.0f", value) : sprintf("%.3g", value)
}
function verdict(value) {
    if (target == "") return ""
    if (target ~ /^>/) return value >= substr(target, 2) + 0 ? "reached" : "missed"
    return value <= target + 0 ? "reached" : "missed"
}
function spread(    of_ours, of_theirs, i, n, value, least, most) {
    n = split(ours, of_ours)
    split(theirs, of_theirs)
    for (i = 1; i <= n; ++i) {
        value = theirs == "" ? of_ours[i] + 0 : of_ours[i] / of_theirs[i]
        if (i == 1 || value < least) least = value
        if (i == 1 || value > most) most = value
    }
    return figure(least) " .. " figure(most)
}
BEGIN {
    OFS = "\t"
    value = median(ours)
    if (theirs != "") ratio = value / median(theirs)
    print what, against, figure(value) " " unit, theirs == "" ? "" : figure(median(theirs)) " " unit, \
        theirs == "" ? "" : figure(ratio), spread(), target, verdict(theirs == "" ? value : ratio)
}
