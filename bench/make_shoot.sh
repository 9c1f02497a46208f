#!/bin/sh
# Makes shoots for sort_shoot in FOLDER (default: build/bench-media): shoot40 and shoot400 hold that many clips of 4K
# H.264, four seconds each at 59.94 frames a second. Four are encoded, the others are links to them: each is opened,
# probed and decoded for itself all the same.
#   bench/make_shoot.sh [FOLDER]
set -eu
folder=${1:-$(dirname "$0")/../build/bench-media}
mkdir -p "$folder"
cd "$folder"

scene() {
    case $1 in
    0) echo "testsrc2=s=3840x2160:r=60000/1001:d=4,noise=alls=6:allf=t" ;;
    1) echo "gradients=s=3840x2160:r=60000/1001:d=4:seed=7:speed=0.02,noise=alls=6:allf=t" ;;
    2) echo "mandelbrot=s=3840x2160:r=60000/1001:maxiter=200:end_scale=0.1,noise=alls=6:allf=t" ;;
    *) echo "cellauto=s=960x540:r=60000/1001:rule=110,scale=3840x2160,noise=alls=6:allf=t" ;;
    esac
}

for i in 0 1 2 3; do
    if [ ! -e "take$i.mp4" ]; then
        echo "making take$i.mp4" >&2
        nice -n 10 ffmpeg -nostdin -loglevel error -y -f lavfi -i "$(scene $i)" -t 4 -pix_fmt yuv420p -c:v libx264 \
            -preset veryfast -crf 23 -g 60 "part-take$i.mp4"
        mv "part-take$i.mp4" "take$i.mp4"
    fi
done
for count in 40 400; do
    if [ ! -d "shoot$count" ]; then
        mkdir "part-shoot$count"
        for i in $(seq 1 $count); do
            ln "take$((i % 4)).mp4" "part-shoot$count/C$(printf %04d "$i").MP4"
        done
        mv "part-shoot$count" "shoot$count"
    fi
done
