"""The machine that a run was made on."""

import glob
import os


def description():
    with open("/proc/meminfo", encoding="ascii") as file:
        memory = int(file.readline().split()[1]) / 1024 / 1024
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        model = next((line.split(":")[1].strip() for line in file if line.startswith("model name")), "")
    card = "a" if glob.glob("/dev/dri/renderD*") else "no"
    return (
        f"{os.cpu_count()} cores ({model}), {memory:.0f} GB, {card} graphics card; "
        f"load {os.getloadavg()[0]:.1f} before the first run"
    )
