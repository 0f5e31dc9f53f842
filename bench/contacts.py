"""contacts-search beside khard over address books. khard keeps no index and reads every card each time."""

import shutil

import make_contacts

SIZES = (2_000, 20_000)


def configure_khard(bench, folder):
    bench.write_config("khard/khard.conf", f"""[addressbooks]
[[friends]]
path = {folder}/friends
[general]
default_action = list
""")


def measure_search(bench, khard, count):
    folder = bench.work / f"contacts-{count}"
    make_contacts.make(folder, count)
    caches = bench.use_folder("VESK_CONTACTS_DIR", folder)
    configure_khard(bench, folder)
    ours = [bench.broker, "contacts-search", "--query", "17612"]
    label = f"{count:,} cards"
    first, = bench.take_turns([ours], 3, [0], lambda _: shutil.rmtree(caches, ignore_errors=True))
    bench.row(f"{label}, no index, contacts-search", first.seconds * 1000, "ms", "", None)
    commands = {"contacts-search": ours} | ({"khard list": [khard, "list"]} if khard else {})
    warm = bench.compare(f"{label}, warm", commands, 15 if count <= 2_000 else 5, 15 if count == 2_000 else None)
    if count == 20_000:
        bench.row(f"{label}, warm", warm[0].seconds, "s", "< 0.1", warm[0].seconds < 0.1)
    bench.judge_memory(f"{label}, warm", ours, 60)
    shutil.rmtree(caches)
    bench.judge_memory(f"{label}, no index", ours, 60)
    shutil.rmtree(folder)


def measure(bench, sizes):
    khard = bench.peer("khard")
    bench.grant("contacts")
    for count in sizes:
        measure_search(bench, khard, count)
