# SPDX-License-Identifier: MIT
"""What `cmake --install` puts where, the Debian package and the source archive, as the tools of a distribution see them."""

import configparser
import gzip
import os
import pathlib
import re
import struct
import subprocess
import tarfile
import tempfile
import unittest
import xml.etree.ElementTree

SOURCE = pathlib.Path(os.environ["VIRELO_SOURCE"])
BUILD = pathlib.Path(os.environ["VIRELO_BUILD"])
CMAKE = os.environ["VIRELO_CMAKE"]
CPACK = os.environ["VIRELO_CPACK"]
APP_ID = os.environ["VIRELO_APP_ID"]
VERSION = os.environ["VIRELO_VERSION"]

ICON_SIZES = [16, 22, 24, 32, 48, 64, 96, 128, 256, 512]
INSTALLED = {
    "bin/VireloApp",
    "bin/virelo-sim",
    f"share/applications/{APP_ID}.desktop",
    "share/doc/virelo-app/CHANGELOG.md",
    f"share/icons/hicolor/scalable/apps/{APP_ID}.svg",
    "share/man/man1/VireloApp.1.gz",
    "share/man/man1/virelo-sim.1.gz",
    f"share/metainfo/{APP_ID}.metainfo.xml",
} | {f"share/icons/hicolor/{size}x{size}/apps/{APP_ID}.png" for size in ICON_SIZES}
ONLY_PACKAGED = {
    "share/doc/virelo-app/changelog.gz",
    "share/doc/virelo-app/copyright",
    "share/lintian/overrides/virelo-app",
}

# The default domain lies under the top level that is reserved for examples, so the identifier made from it begins with
# no known one. With a real domain this is not said.
APPSTREAM_OVERRIDES = ["--override=cid-maybe-not-rdns=pedantic"]


def run(*command, **options):
    """What the command prints on both outputs; it has to end well."""
    done = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, encoding="utf-8", check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def files_below(folder):
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if not path.is_dir()}


class Installed_Test(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        run(CMAKE, "--install", BUILD, "--prefix", "/usr", env={**os.environ, "DESTDIR": folder.name})
        cls.usr = pathlib.Path(folder.name) / "usr"

    def page(self, name):
        return gzip.decompress((self.usr / f"share/man/man1/{name}.1.gz").read_bytes()).decode()

    def words_of_page(self, name):
        """The page as its reader sees it, in one line."""
        text = run("man", "--local-file", self.usr / f"share/man/man1/{name}.1.gz",
                   env={**os.environ, "MANWIDTH": "1000", "MAN_KEEP_FORMATTING": ""})
        return " ".join(re.sub(".\b", "", text).split())

    def sim(self, option):
        return run(self.usr / "bin/virelo-sim", option).splitlines()

    def test_every_file_is_in_its_place_and_no_other_is_there(self):
        self.assertEqual(files_below(self.usr.parent), {f"usr/{name}" for name in INSTALLED})

    def test_the_programs_find_their_libraries_without_the_build_folder(self):
        for name in ("VireloApp", "virelo-sim"):
            self.assertNotRegex(run("readelf", "--dynamic", self.usr / "bin" / name), r"\((RPATH|RUNPATH)\)")
        self.assertEqual(self.sim("--version"), [f"virelo-sim {VERSION}"])

    def test_the_desktop_file_is_valid_and_names_program_window_and_icon(self):
        path = self.usr / f"share/applications/{APP_ID}.desktop"
        self.assertEqual(run("desktop-file-validate", path), "")
        entry = configparser.ConfigParser(interpolation=None, delimiters="=")
        entry.optionxform = str
        entry.read(path, encoding="utf-8")
        entry = entry["Desktop Entry"]
        self.assertEqual((entry["Exec"], entry["StartupWMClass"], entry["Icon"]), ("VireloApp", "VireloApp", APP_ID))

    def test_the_metainfo_is_valid_and_names_the_desktop_file_and_the_version(self):
        path = self.usr / f"share/metainfo/{APP_ID}.metainfo.xml"
        printed = run("appstreamcli", "validate", "--no-net", "--strict", *APPSTREAM_OVERRIDES, path)
        self.assertNotRegex(printed, r"(?m)^[EWI]:")
        root = xml.etree.ElementTree.parse(path).getroot()
        self.assertEqual(root.findtext("id"), APP_ID)
        self.assertEqual(root.findtext("launchable"), f"{APP_ID}.desktop")
        self.assertEqual(root.findtext("icon"), APP_ID)
        self.assertEqual(root.find("releases/release").get("version"), VERSION)

    def test_the_program_gives_itself_that_identifier(self):
        self.assertIn(APP_ID.encode() + b"\0", (self.usr / "bin/VireloApp").read_bytes())

    def test_every_icon_has_the_size_of_its_folder(self):
        for size in ICON_SIZES:
            head = (self.usr / f"share/icons/hicolor/{size}x{size}/apps/{APP_ID}.png").read_bytes()[:24]
            self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", head[16:]), (size, size))

    def test_the_manual_pages_are_set_without_a_warning(self):
        for name in ("VireloApp", "virelo-sim"):
            path = self.usr / f"share/man/man1/{name}.1.gz"
            done = subprocess.run(["man", "--warnings", "--local-file", path], stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, encoding="utf-8",
                                  env={**os.environ, "MANROFFSEQ": "", "MANWIDTH": "80"}, check=True)
            self.assertEqual(done.stderr, "")
            self.assertIn(f"VIRELOv2 App {VERSION}", self.page(name))

    def test_the_page_of_the_simulator_tells_all_that_its_help_tells(self):
        page = self.words_of_page("virelo-sim")
        usage = "\n".join(self.sim("--help"))
        options = re.findall(r"(?m)^  (?:-\w, )?(--[\w-]+)", usage)
        commands = re.findall(r"(?m)^  (\S+(?: [A-Z]+)*) ", usage.split("\nCommands", 1)[1].split("\n\n", 1)[0])
        faults = [re.sub(r"^(\S+).* \((.*)\)$", r"\1 \2", line).replace("|", " | ") for line in self.sim("--list-faults")]
        scenes = [line.split()[0] for line in self.sim("--list-scenes")]
        keys = [re.sub(r"^  (\S+).* (\(.*\))$", r"\1 \2", line) for line in self.sim("--list-keys") if line[0] == " "]
        for all_words in (options, commands, faults, scenes, keys):
            self.assertGreater(len(all_words), 2)
            self.assertEqual([words for words in all_words if words not in page], [])


class Package_Test(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        run(CPACK, "-G", "DEB", "--config", BUILD / "CPackConfig.cmake", "-B", folder.name)
        cls.package, = cls.folder.glob("*.deb")

    def field(self, name):
        return run("dpkg-deb", "--field", self.package, name).strip()

    def test_it_is_named_after_version_and_architecture(self):
        architecture = run("dpkg", "--print-architecture").strip()
        self.assertEqual(self.package.name, f"virelo-app_{VERSION}_{architecture}.deb")
        self.assertEqual((self.field("Package"), self.field("Version")), ("virelo-app", VERSION))

    def test_it_holds_what_is_installed_and_what_a_package_has_to_tell(self):
        with tempfile.TemporaryDirectory() as folder:
            run("dpkg-deb", "--extract", self.package, folder)
            self.assertEqual(files_below(pathlib.Path(folder)), {f"usr/{name}" for name in INSTALLED | ONLY_PACKAGED})
            log = gzip.decompress((pathlib.Path(folder) / "usr/share/doc/virelo-app/changelog.gz").read_bytes())
        self.assertTrue(log.decode().startswith(f"virelo-app ({VERSION}) "))

    def test_its_dependencies_come_from_what_the_programs_are_linked_with(self):
        needed = {entry.split()[0] for entry in self.field("Depends").split(", ")}
        for library in ("libc6", "libqt5core5a", "libqt5gui5", "libqt5network5", "libqt5widgets5"):
            self.assertIn(library, needed)
        self.assertIn("avahi-daemon", self.field("Recommends").split(", "))

    def test_nothing_runs_when_it_comes_or_goes_so_nothing_stays(self):
        control = run("dpkg-deb", "--ctrl-tarfile", self.package, errors="replace")
        self.assertIn("md5sums", control)
        for script in ("preinst", "postinst", "prerm", "postrm"):
            self.assertNotIn(script, control)

    def test_lintian_finds_nothing(self):
        printed = run("lintian", "--allow-root", "--display-info", "--pedantic",
                      "--fail-on=error,warning,info,pedantic", self.package)
        self.assertEqual(printed, "")

    def test_the_changelog_tells_of_this_version(self):
        self.assertIn(f"\n## [{VERSION}] - ", (SOURCE / "CHANGELOG.md").read_text(encoding="utf-8"))


class Source_Test(unittest.TestCase):
    def test_the_archive_holds_what_a_clone_holds_and_nothing_built(self):
        with tempfile.TemporaryDirectory() as folder:
            run(CPACK, "--config", BUILD / "CPackSourceConfig.cmake", "-B", folder)
            path, = pathlib.Path(folder).glob("*.tar.xz")
            top = f"virelo-app-{VERSION}"
            self.assertEqual(path.name, f"{top}.tar.xz")
            with tarfile.open(path) as archive:
                names = {entry.name for entry in archive if not entry.isdir()}
        wanted = {f"{top}/{name}" for name in ("CMakeLists.txt", "packaging/CMakeLists.txt", ".clang-format")}
        self.assertEqual(wanted - names, set())
        for name in names:
            self.assertNotRegex(name, rf"^{top}/(build/|\.git(/|$))|__pycache__")
        if (SOURCE / ".git").exists():
            listed = run("git", "-C", SOURCE, "ls-files", "-z").split("\0")
            tracked = {f"{top}/{name}" for name in listed if name and (SOURCE / name).exists()}
            self.assertEqual(tracked - names, set())


if __name__ == "__main__":
    unittest.main()
