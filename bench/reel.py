"""media-compose beside two ffmpeg commands with the same encoder settings: one that loops the stills, and one that
decodes and scales each of them once."""

import json
import re
import subprocess

SIZES = (6,)
CLIPS = 2
FRAME = "scale=1080:1920:force_original_aspect_ratio=decrease,pad=1080:1920:(ow-iw)/2:(oh-ih)/2,setsar=1"
COLOURS = "scale=out_color_matrix=bt709:out_range=tv,format=yuv420p"
ENCODER = ["-c:v", "libx264", "-preset", "veryfast", "-crf", "18", "-profile:v", "high", "-c:a", "aac", "-b:a", "256k",
           "-movflags", "+faststart"]


def make_inputs(bench, ffmpeg, stills):
    """Photographs of 12 megapixels with the noise that they have, and clips of a moving pattern with a tone."""
    paths = [bench.work / f"still-{n}.jpg" for n in range(stills)] + [bench.work / f"clip-{n}.mp4" for n in range(CLIPS)]
    for number, path in enumerate(paths):
        if path.suffix == ".jpg":
            source = ["-f", "lavfi", "-i", f"gradients=s=4032x3024:seed={number}:n=6,noise=alls=6", "-frames:v", "1",
                      "-q:v", "3"]
        else:
            source = ["-f", "lavfi", "-i", "testsrc2=s=1920x1080:r=30:d=4", "-f", "lavfi", "-i", "sine=440:d=4", "-c:v",
                      "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-c:a", "aac"]
        subprocess.run([ffmpeg, "-y", "-loglevel", "error", *source, str(path)], check=True)
    return [path for path in paths if path.suffix == ".jpg"], [path for path in paths if path.suffix == ".mp4"]


def joined(bench, ffmpeg, stills, clips, name, still_input, still_filter):
    """The ffmpeg command for the whole film."""
    inputs, chains, order = [], [], ""
    for number, still in enumerate(stills):
        inputs += [*still_input, "-i", str(still)]
        chains.append(f"[{number}:v]{still_filter}[v{number}];anullsrc=r=48000:cl=stereo,atrim=0:3[a{number}]")
        order += f"[v{number}][a{number}]"
    for number, clip in enumerate(clips, len(stills)):
        inputs += ["-i", str(clip)]
        chains.append(f"[{number}:v]{FRAME},fps=30,{COLOURS}[v{number}];"
                      f"[{number}:a]aresample=48000,aformat=channel_layouts=stereo[a{number}]")
        order += f"[v{number}][a{number}]"
    chains.append(f"{order}concat=n={len(stills) + len(clips)}:v=1:a=1[v][a]")
    return [ffmpeg, "-y", "-loglevel", "error", *inputs, "-filter_complex", ";".join(chains), "-map", "[v]", "-map",
            "[a]", "-r", "30", *ENCODER, str(bench.work / name)]


def picture_likeness(bench, ffmpeg, name):
    """The mean peak signal-to-noise ratio of another film against ours, in decibels."""
    report = subprocess.run([ffmpeg, "-hide_banner", "-i", str(bench.work / name), "-i", str(bench.work / "ours.mp4"),
                             "-lavfi", "[0:v][1:v]psnr", "-f", "null", "-"], capture_output=True, text=True,
                            check=True).stderr
    return float(re.search(r"average:([0-9.inf]+)", report).group(1))


def measure(bench, sizes):
    ffmpeg = bench.peer("ffmpeg")
    if not ffmpeg:
        return
    for count in sizes:
        stills, clips = make_inputs(bench, ffmpeg, count)
        request = bench.work / "reel.json"
        request.write_text(json.dumps({
            "profile": "instagram_reel", "inputs": [{"path": str(path)} for path in stills + clips],
            "outputPath": str(bench.work / "ours.mp4")}), encoding="utf-8")
        ours = [bench.broker, "media-compose", "--request", str(request)]
        loops = joined(bench, ffmpeg, stills, clips, "loops.mp4", ["-loop", "1", "-t", "3", "-framerate", "30"],
                       f"{FRAME},fps=30,{COLOURS}")
        once = joined(bench, ffmpeg, stills, clips, "once.mp4", [],
                      f"{FRAME},{COLOURS},loop=loop=89:size=1,setpts=N/30/TB,fps=30")
        label = f"{count} stills and {CLIPS} clips"
        bench.compare(label, {"media-compose": ours, "ffmpeg -loop 1": loops}, 1, 2)
        bench.compare(f"{label}, again", {"media-compose": ours, "ffmpeg, scaled once": once}, 3, 1 / 1.1)
        bench.row(f"{label}, picture against the looping command", picture_likeness(bench, ffmpeg, "loops.mp4"), "dB",
                  "", None)
        bench.row(f"{label}, picture against the other command", picture_likeness(bench, ffmpeg, "once.mp4"), "dB", "",
                  None)
        bench.judge_memory(label, ours, 600)
