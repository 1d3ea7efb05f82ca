#!/bin/bash
# Measures the cost of including a header: IncludeCost.sh <compiler> <our Include folder>
# compiles one-line files, in turns, and prints the median time of each.
set -euo pipefail

compiler=$1
include=$2
rounds=15
headers=("" ZmMath.h ZmMathematics.h glm/glm.hpp Eigen/Dense LinearMath/btTransform.h cglm/cglm.h)
goals=("" 150 40)

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# compile <number of the header>
compile() {
    "$compiler" -std=c++17 -O0 -I "$include" -isystem /usr/include/eigen3 -isystem /usr/include/bullet \
        -c "$scratch/$1.cpp" -o "$scratch/$1.o" 2>/dev/null
}

# median <number of the header>
median() {
    sort -n "$scratch/$1.times" | sed -n "$((rounds / 2 + 1))p"
}

for i in "${!headers[@]}"; do
    echo "${headers[i]:+#include <${headers[i]}>}" >"$scratch/$i.cpp"
    if ! compile "$i"; then
        [ "$i" -gt 2 ] || { echo "<${headers[i]}> does not compile" >&2; exit 1; }
        unset "headers[i]"
    fi
done
for ((round = 0; round < rounds; ++round)); do
    for i in "${!headers[@]}"; do
        start=$(date +%s%N)
        compile "$i"
        echo $((($(date +%s%N) - start) / 1000)) >>"$scratch/$i.times"
    done
done

empty=$(median 0)
printf '%-26s %8s %8s\n' "$(basename "$compiler") -O0" ms goal
for i in "${!headers[@]}"; do
    time=$(median "$i")
    if [ "$i" -eq 0 ]; then
        printf '%-26s %8d\n' "an empty file" $((time / 1000))
    else
        printf '%-26s %+8d %8s\n' "${headers[i]}" $(((time - empty) / 1000)) "${goals[i]:-}"
    fi
done
