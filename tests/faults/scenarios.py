"""The scenarios of the fault harness: what the program does while something goes wrong."""

import os
import re
from dataclasses import dataclass, field
from pathlib import Path

IDS = {match[1]: match[2] for match in re.finditer(
    r"#define (\w+) (\d+)", (Path(__file__).parents[2] / "src/resources/ids.h").read_text())}
SETTINGS = "settings.ini"
RECOVERY = ["--recovery", "../data/recovery"]


def command(name):
    return f"command {IDS['kCommand' + name]}"


def dialog(name, *values, button="ok"):
    words = [f"{IDS[control]}={value}" for control, value in values]
    return " ".join(["dialog", IDS[f"k{name}Dialog"], *words, button])


@dataclass
class Scenario:
    name: str
    # The words behind the program's name; or the lines of a script.
    words: list = field(default_factory=list)
    script: list = None
    # Files of the work folder, each with the sample that it is a copy of.
    files: dict = field(default_factory=dict)
    # Commands that run before, with nothing going wrong.
    before: list = field(default_factory=list)
    # The folders in which the next start saves something.
    folders: tuple = (".",)
    # Whether it runs as another user when root runs the harness.
    user: bool = False
    # What can't be done even when nothing else goes wrong.
    fails: str = ""
    # Targets that are written in place: after a kill they are whole from the next start on.
    in_place: bool = False
    # Whether a file that can't be read is told.
    reports_reads: bool = False
    # Whether the result goes to standard output.
    prints: bool = False
    # The documents whose cut stays modified, with its path and layers, when they can't be written.
    keeps_marks: tuple = ()
    # Whether files are replaced more than once on the way, so that there are states in between.
    steps: bool = False
    # Whether the player for pages must lie beside the program.
    needs_player: bool = False
    # A folder in which a kill may leave what the next run of the command takes away.
    leaves: str = ""
    # Files that the program can do without.
    spare: tuple = ()
    # Whether the script keeps what isn't saved in a recovery folder. `next` is then the script of the next start.
    recovers: bool = False
    next: list = None
    # Called with the place before and after the rights are changed.
    prepare: object = None
    deny: object = None
    allow: object = None

    def __post_init__(self):
        if self.script is not None:
            self.words = ["run", "script", "--settings", SETTINGS]
            if self.recovers:
                self.words += RECOVERY
        else:
            self.reports_reads = True

    def set_up(self, place):
        if self.prepare:
            self.prepare(place)

    def take_rights(self, place):
        if self.deny:
            self.deny(place)

    def give_rights(self, place):
        if self.allow:
            self.allow(place)

    def is_spare(self, path):
        # Settings that can't be written stay as they were, without a word.
        return path.endswith((SETTINGS, *self.spare))


def make_samples(folder, run):
    """Writes the files that scenarios start with."""

    def picture(name, start, width=200, height=150):
        value, rows = start, bytearray()
        for _ in range(width * height):
            value = (value * 1103515245 + 12345) & 0x7FFFFFFF
            rows.append((0, 85, 170, 255)[value >> 16 & 3])
        (folder / name).write_bytes(b"P5 %d %d 255\n" % (width, height) + rows)

    def do(*words):
        done = run(words)
        if done.status != 0:
            raise SystemExit(f"faults: sorvel {' '.join(words)}: status {done.status}: {done.errors.strip()}")

    for i in range(6):
        picture(f"p{i}.pgm", i + 1)
    picture("small.pgm", 9, 16, 12)
    do("import", "probe.cut", "small.pgm")
    do("import", "a.cut", "p0.pgm", "p1.pgm", "p2.pgm", "p3.pgm")
    do("import", "b.cut", "p4.pgm", "p5.pgm")
    do("import", "c.cut", "p2.pgm", "p4.pgm")
    (folder / "damaged.cut").write_bytes((folder / "a.cut").read_bytes()[:-2000])
    (folder / "film.flm").write_text("Title\nAuthor\n200, 150\na.cut\nb.cut\n")
    (folder / "other.flm").write_text("Old\nAuthor\n320, 240\nc.cut\n")
    (folder / SETTINGS).write_bytes(b"[OnNewFilm]\r\nwidth=320\r\nheight=240\r\ntitle=Old\r\nauthor=Who\r\n")
    (folder / "script").write_text("\n".join([
        "open a.cut", "file a.lyr", command("SaveLayer"), "open c.cut", "file c.lyr", command("SaveLayer")]) + "\n")
    do("run", "script", "--settings", SETTINGS)
    for name in ("a", "c"):
        do("compile", f"{name}.cut", f"{name}.ca")
        do("frame", f"{name}.cut", "1", f"{name}.bmp")
    do("export", "other.flm", "c.sv")


CUTS = {"a.cut": "a.cut", "other.cut": "c.cut"}
FILM = {"a.cut": "a.cut", "b.cut": "b.cut", "film.flm": "film.flm"}

BEFORE = "state before.json"
AFTER = "state after.json"
BLANK = command("BlankCell")


def commands():
    yield Scenario("resave-cut", ["resave", "a.cut", "other.cut"], files=CUTS)
    yield Scenario("resave-new", ["resave", "a.cut", "new.cut"], files={"a.cut": "a.cut"})
    yield Scenario("resave-layer", ["resave", "a.lyr", "other.lyr"], files={"a.lyr": "a.lyr", "other.lyr": "c.lyr"})
    yield Scenario("resave-film", ["resave", "film.flm", "other.flm"],
                   files={"film.flm": "film.flm", "other.flm": "other.flm"})
    yield Scenario("compile", ["compile", "a.cut", "other.ca"], files={"a.cut": "a.cut", "other.ca": "c.ca"})
    yield Scenario("export", ["export", "film.flm", "other.sv"], files={**FILM, "other.sv": "c.sv"},
                   spare=("a.ca", "b.ca"))
    yield Scenario("frame", ["frame", "a.cut", "1", "other.bmp"], files={"a.cut": "a.cut", "other.bmp": "c.bmp"})
    yield Scenario("view", ["view", "a.cut", "1", "other.bmp"], files={"a.cut": "a.cut", "other.bmp": "c.bmp"})
    yield Scenario("import", ["import", "other.cut", "p0.pgm", "p1.pgm"],
                   files={"p0.pgm": "p0.pgm", "p1.pgm": "p1.pgm", "other.cut": "c.cut"})
    yield Scenario("play", ["play", "a.ca", "out", "--ticks", "3"], files={"a.ca": "a.ca", "c.ca": "c.ca"},
                   before=[["play", "c.ca", "out", "--ticks", "2"]], folders=(".", "out"))
    for ending in ("png", "gif", "mp4", "mkv", "y4m"):
        yield Scenario(f"render-{ending}", ["render", "a.ca", f"other.{ending}"],
                       files={"a.ca": "a.ca", f"other.{ending}": "c.bmp"})
    yield Scenario("render-folder", ["render", "a.ca", "out"], files={"a.ca": "a.ca"}, leaves="out.partial")
    yield Scenario("render-pipe", ["render", "a.ca", "-"], files={"a.ca": "a.ca"}, prints=True)
    yield Scenario("web", ["web", "a.ca", "other.html"], files={"a.ca": "a.ca", "other.html": "c.bmp"},
                   needs_player=True)
    yield Scenario("web-linked", ["web", "a.ca", "other.html", "--linked"],
                   files={"a.ca": "a.ca", "other.html": "c.bmp", "other.sv": "c.sv"}, needs_player=True)
    replaced = {"a.cut": "a.cut", "b.cut": "b.cut", "h.cut": "c.cut"}
    once = [["resave", "a.cut", "h.cut"]]
    yield Scenario("history-restore", ["history", "h.cut", "--restore", "1"], files=replaced, before=once)
    yield Scenario("history-restore-to", ["history", "h.cut", "--restore", "1", "--to", "b.cut"], files=replaced,
                   before=once)
    yield Scenario("history-full", ["resave", "b.cut", "h.cut"], files=replaced,
                   before=[["resave", name, "h.cut"] for name in ("a.cut", "b.cut", "a.cut", "b.cut", "a.cut", "a.cut")])
    yield Scenario("history-list", ["history", "h.cut"], files=replaced, before=once, prints=True)
    yield Scenario("info", ["info", "a.cut"], files={"a.cut": "a.cut"}, prints=True)
    long_name = "n" * 251 + ".cut"
    yield Scenario("long-name", ["resave", "a.cut", long_name], files={"a.cut": "a.cut", long_name: "c.cut"})

    def link(place):
        (place.work / "real").mkdir()
        os.rename(place.work / "other.cut", place.work / "real/target.cut")
        os.symlink("real/target.cut", place.work / "other.cut")

    yield Scenario("link", ["resave", "a.cut", "other.cut"], files=CUTS, prepare=link, folders=(".", "real"))


def unwritable():
    """Targets that need another way, or that can't be written."""

    def mode(path, bits):
        return lambda place: os.chmod(place.work / path, bits)

    yield Scenario("readonly-file", ["resave", "a.cut", "other.cut"], files=CUTS, user=True, fails="other.cut",
                   deny=mode("other.cut", 0o444))
    into = {"a.cut": "a.cut", "in/other.cut": "c.cut"}
    closed = {"deny": mode("in", 0o555), "allow": mode("in", 0o755), "user": True}
    yield Scenario("readonly-folder", ["resave", "a.cut", "in/other.cut"], files=into, in_place=True, folders=(".", "in"),
                   **closed)
    yield Scenario("readonly-folder-new", ["resave", "a.cut", "in/new.cut"], files=into, fails="new.cut",
                   folders=(".", "in"), **closed)

    def no_data(place):
        os.chmod(place.work / "in", 0o555)
        os.chmod(place.data, 0o555)

    def data_again(place):
        os.chmod(place.work / "in", 0o755)
        os.chmod(place.data, 0o755)

    yield Scenario("readonly-all", ["resave", "a.cut", "in/other.cut"], files=into, fails="in/other.cut", user=True,
                   folders=(".", "in"), deny=no_data, allow=data_again)
    yield Scenario("no-folder", ["resave", "a.cut", "none/new.cut"], files={"a.cut": "a.cut"}, fails="new.cut")
    yield Scenario("folder-as-file", ["resave", "a.cut", "in"], files=into, fails="in", folders=(".", "in"))

    def full(place):
        os.symlink("/dev/full", place.work / "full.cut")

    yield Scenario("device-full", ["resave", "a.cut", "full.cut"], files={"a.cut": "a.cut"}, prepare=full,
                   fails="full.cut")
    script = ["open in/other.cut", BLANK, BEFORE, "file cancel", command("OverwriteCut"), AFTER]
    yield Scenario("readonly-folder-overwrite", script=script, files={"in/other.cut": "a.cut"}, in_place=True,
                   folders=(".", "in"), keeps_marks=("in/other.cut",), **closed)
    yield Scenario("readonly-file-overwrite", script=["open other.cut", BLANK, BEFORE, "file cancel",
                                                      command("OverwriteCut"), AFTER],
                   files={"other.cut": "a.cut"}, user=True, deny=mode("other.cut", 0o444), fails="other.cut",
                   keeps_marks=("other.cut",))


def scripts():
    new_cut = [dialog("Cut"), dialog("Layer"), command("NewCut")]
    yield Scenario("save-new", steps=True, script=[*new_cut, BEFORE, "file new.cut", command("SaveCutAs"), AFTER],
                   keeps_marks=("new.cut",))
    yield Scenario("save-as", script=["open a.cut", BLANK, BEFORE, "file other.cut", command("SaveCutAs"), AFTER],
                   files=CUTS, keeps_marks=("other.cut",))
    overwrite = [BEFORE, "file cancel", command("OverwriteCut"), AFTER]
    yield Scenario("overwrite", script=["open a.cut", BLANK, *overwrite], files={"a.cut": "a.cut"},
                   keeps_marks=("a.cut",))
    # What a damaged file held is kept, whatever its save does.
    yield Scenario("overwrite-damaged", script=["open a.cut", BLANK, *overwrite], files={"a.cut": "damaged.cut"},
                   keeps_marks=("a.cut",))
    # An unused layer is thrown away by the save.
    yield Scenario("overwrite-purge", files={"a.cut": "a.cut"}, keeps_marks=("a.cut",),
                   script=["open a.cut", dialog("Layer"), command("AddLayer"), BLANK, *overwrite])
    yield Scenario("close-yes", files={"a.cut": "a.cut"}, keeps_marks=("a.cut",),
                   script=["open a.cut", BLANK, BEFORE, "answer yes", "file cancel", "close", AFTER])
    yield Scenario("save-layer", files={"a.cut": "a.cut", "other.lyr": "c.lyr"},
                   script=["open a.cut", "file other.lyr", command("SaveLayer"), AFTER])
    yield Scenario("export-bitmap", files={"a.cut": "a.cut", "other.bmp": "c.bmp"},
                   script=["open a.cut", "file other.bmp", command("ExportBitmap"), AFTER])
    yield Scenario("play-cache", files={"a.cut": "a.cut", "a.ca": "c.ca"}, spare=("a.ca",),
                   script=["open a.cut", BLANK, "file a.cut", command("SaveCutAs"), command("Play"), "tick 2", AFTER])
    film = ["open film.flm", f"select {IDS['kCutList']} 0"]
    yield Scenario("save-film", files={**FILM, "other.flm": "other.flm"},
                   script=["open film.flm", "file other.flm", command("SaveFilmAs"), AFTER])
    change = [dialog("Film", ("kFilmTitleEdit", "Changed")), command("FilmProperties")]
    yield Scenario("overwrite-film", files=FILM,
                   script=["open film.flm", *change, "file cancel", command("OverwriteFilm"), AFTER])
    yield Scenario("export-film", files={**FILM, "other.sv": "c.sv"}, spare=("a.ca", "b.ca"),
                   script=["open film.flm", "file other.sv", command("ExportFilm"), AFTER])
    yield Scenario("play-selection", files=FILM, spare=("a.ca", "b.ca"),
                   script=[*film, command("PlaySelection"), "tick 2", AFTER])
    numbered = [dialog("Cut"), dialog("Layer", button="cancel"), command("AddNumberedCut")]
    (first, last) = ("Title\nAuthor\n200, 150\nc001.cut\n", "Title\nAuthor\n200, 150\nc999.cut\n")
    yield Scenario("numbered-new", files={"c001.cut": "a.cut"}, script=["open film.flm", *numbered, AFTER],
                   prepare=lambda place: (place.work / "film.flm").write_text(first))
    # Behind number 999 the name stays, and the new cut takes the place of the old one.
    yield Scenario("numbered-replaces", files={"c999.cut": "a.cut"}, script=["open film.flm", *numbered, AFTER],
                   prepare=lambda place: (place.work / "film.flm").write_text(last))
    yield Scenario("rename", files=FILM,
                   script=[*film, dialog("Rename", ("kRenameEdit", "z")), command("RenameCut"), AFTER])
    yield Scenario("delete", files={**FILM, "a.ca": "a.ca"}, spare=("a.ca",),
                   script=[*film, "answer yes", command("DeleteCuts"), AFTER])
    yield Scenario("extract", files={**FILM, "new/a.cut": "c.cut", "new/film.flm": "other.flm"}, folders=(".", "new"),
                   script=["open film.flm", f"select {IDS['kCutList']} 0 1", "file new/film.flm", command("ExtractCuts"),
                           AFTER])
    yield Scenario("exit-yes", files={**FILM, SETTINGS: SETTINGS}, steps=True,
                   script=["open film.flm", *change, "open a.cut", BLANK, AFTER, "answer yes", "answer yes",
                           "file cancel", "file cancel", "exit"])
    yield Scenario("settings", files={SETTINGS: SETTINGS}, steps=True,
                   script=[dialog("Film", ("kFilmTitleEdit", "New"), ("kFilmWidthEdit", 111)), command("NewFilm"), AFTER])
    yield Scenario("exit-settings", files={SETTINGS: SETTINGS}, steps=True, script=[command("StatusBar"), AFTER, "exit"])
    outputs = {"s.json": "probe.cut", "v.bmp": "c.bmp", "w.bmp": "c.bmp", "p.pgm": "c.bmp", "d.dib": "c.bmp"}
    # The drawing was told as changed, so the next start has it, or the file.
    recovery = ["open a.cut", BLANK, BEFORE, *overwrite, "answer no", "exit"]
    yield Scenario("recovery", files={"a.cut": "a.cut"}, keeps_marks=("a.cut",), script=recovery, recovers=True,
                   next=["state recovered.json", "answer no", "exit"])
    yield Scenario("recovery-film", files=FILM, recovers=True, next=["state recovered.json", "answer no", "exit"],
                   script=["open film.flm", *change, BEFORE, "file cancel", command("OverwriteFilm"), AFTER,
                           "answer no", "exit"])
    yield Scenario("outputs", files={"a.cut": "a.cut", **outputs},
                   script=["open a.cut", "state s.json", "view v.bmp", "screen w.bmp", command("Play"), "player p.pgm",
                           command("CopyToClipboard"), "save-clipboard d.dib", AFTER], spare=("a.ca",))


SCENARIOS = [*commands(), *unwritable(), *scripts()]
