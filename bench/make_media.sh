#!/bin/sh
# Makes the clips that sample_frames measures, once, in FOLDER (default: build/bench-media): about 3 GB.
#   bench/make_media.sh [FOLDER]
# Ten seconds are encoded and repeated to thirty: a picture with some grain, at the bit rates of cameras.
set -eu
folder=${1:-$(dirname "$0")/../build/bench-media}
mkdir -p "$folder"
cd "$folder"

run() { nice -n 10 ffmpeg -nostdin -loglevel error -y "$@"; }
scene() { echo "testsrc2=s=$1:r=$2:d=$3,noise=alls=6:allf=t"; }
# make NAME ARGUMENTS…: a file is there whole or not at all.
make() {
    name=$1
    shift
    if [ ! -e "$name" ]; then
        echo "making $name" >&2
        run "$@" "part-$name"
        mv "part-$name" "$name"
    fi
}

make h264_10s.mp4 -f lavfi -i "$(scene 3840x2160 60000/1001 10)" -pix_fmt yuv420p -c:v libx264 -preset veryfast \
    -b:v 100M -g 60 -keyint_min 60 -sc_threshold 0
make h264_4k.mp4 -stream_loop 2 -i h264_10s.mp4 -c copy
make h264_4k_1gb.mp4 -stream_loop 8 -i h264_10s.mp4 -c copy
make hevc_10s.mp4 -f lavfi -i "$(scene 3840x2160 60000/1001 10)" -pix_fmt yuv420p10le -c:v libx265 -preset ultrafast \
    -b:v 80M -x265-params log-level=error:keyint=60:min-keyint=60:scenecut=0 -tag:v hvc1
make hevc_4k_10bit.mp4 -stream_loop 2 -i hevc_10s.mp4 -c copy
make prores_4k.mov -f lavfi -i "$(scene 3840x2160 25 6)" -c:v prores_ks -profile:v 2 -vendor apl0
make xdcam.mxf -f lavfi -i "$(scene 1920x1080 25 30)" -c:v mpeg2video -pix_fmt yuv422p -b:v 50M -minrate 50M \
    -maxrate 50M -bufsize 36M -g 12 -bf 2 -flags +ildct+ilme
make avchd.mts -f lavfi -i "$(scene 1920x1080 25 30)" -pix_fmt yuv420p -c:v libx264 -preset veryfast -b:v 24M -g 25 \
    -flags +ildct+ilme -f mpegts
rm -f part-*
ls "$PWD"/h264_4k.mp4 "$PWD"/h264_4k_1gb.mp4 "$PWD"/hevc_4k_10bit.mp4 "$PWD"/prores_4k.mov "$PWD"/xdcam.mxf \
    "$PWD"/avchd.mts
