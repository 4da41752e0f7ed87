# Checks the committed picture strips and the program icon, and that they match their drawings.

import contextlib
import functools
import importlib.machinery
import importlib.util
import io
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import unittest.mock
from pathlib import Path

Repository = Path(__file__).resolve().parents[3]
ResFolder = Repository / "res"
ToolFolder = Repository / "tools" / "art"

sys.dont_write_bytecode = True
sys.path.insert(0, str(ToolFolder))

import pictures


def LoadTool(name):
    loader = importlib.machinery.SourceFileLoader(name, str(ToolFolder / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module


render_art = LoadTool("render_art")
RenderDrawing = render_art.RenderDrawing

Bar = (32, 36, 42)
StatusKey = (200, 200, 200)
White = (255, 255, 255)

# File name: cell size, number of cells.
MainStrips = {"main_small.png": (38, 18), "main_middle.png": (76, 18), "main_large.png": (152, 27)}
StatusStrips = {"status_small.png": (38, 6), "status_large.png": (76, 6)}
AllStrips = {**MainStrips, **StatusStrips}

IconDirectory = [(16, 16, 8), (32, 32, 8), (16, 16, 32), (32, 32, 32), (48, 48, 32), (64, 64, 32)]

# Cells made of upright and level edges only, where a blurred edge would show at once.
UprightCells = {0: "files", 1: "applications", 4: "loaded libraries", 8: "delete", 9: "copy", 11: "paste"}


def ReadBytes(name):
    return (ResFolder / "strips" / name).read_bytes()


@functools.cache
def LoadStrip(name):
    return pictures.DecodePng(ReadBytes(name))


@functools.cache
def Cell(name, number):
    """The colours of one cell, row by row."""
    strip = LoadStrip(name)
    size = AllStrips[name][0]
    return [[strip.At(number * size + x, y)[:3] for x in range(size)] for y in range(size)]


def Cells(strips):
    for name, (size, count) in strips.items():
        background = Bar if name in MainStrips else StatusKey
        for number in range(count):
            yield name, size, number, background


def PaintedBox(cell, background):
    """Left, top, right, bottom of what stands out from the background; right and bottom lie outside."""
    rows = [y for y, row in enumerate(cell) if any(colour != background for colour in row)]
    columns = [x for x in range(len(cell)) if any(row[x] != background for row in cell)]
    if not rows:
        return None
    return columns[0], rows[0], columns[-1] + 1, rows[-1] + 1


def Shrunk(cell, factor):
    size = len(cell) // factor
    result = []
    for y in range(size):
        row = []
        for x in range(size):
            block = [cell[y * factor + j][x * factor + i] for j in range(factor) for i in range(factor)]
            row.append(tuple(sum(colour[channel] for colour in block) / len(block) for channel in range(3)))
        result.append(row)
    return result


def MeanDifference(one, other):
    total = sum(abs(left[0] - right[0]) for oneRow, otherRow in zip(one, other)
                for left, right in zip(oneRow, otherRow))
    return total / len(one) ** 2


class FileFormat(unittest.TestCase):
    def testSizes(self):
        for name, (size, count) in AllStrips.items():
            with self.subTest(name):
                data = ReadBytes(name)
                self.assertEqual(struct.unpack_from(">I", data, 16)[0], size * count)
                self.assertEqual(struct.unpack_from(">I", data, 20)[0], size)

    def testColourTypes(self):
        for name in AllStrips:
            with self.subTest(name):
                data = ReadBytes(name)
                depth, colourType, compression, filtering, interlace = data[24:29]
                self.assertEqual((depth, compression, filtering, interlace), (8, 0, 0, 0))
                self.assertIn(colourType, (2, 3))

    def testNoAlphaAndNothingBesidesThePicture(self):
        for name in AllStrips:
            with self.subTest(name):
                names = LoadStrip(name).chunkNames
                self.assertEqual(sorted(set(names) - {"PLTE"}), ["IDAT", "IEND", "IHDR"])

    def testFileSizes(self):
        self.assertLess(len(ReadBytes("main_large.png")), 45 * 1024)
        self.assertLess(sum(len(ReadBytes(name)) for name in AllStrips), 75 * 1024)
        self.assertLess((ResFolder / "vantor.ico").stat().st_size, 40 * 1024)


class KeyColours(unittest.TestCase):
    def testFirstPixelIsTheKey(self):
        for name in AllStrips:
            with self.subTest(name):
                self.assertEqual(LoadStrip(name).At(0, 0)[:3], Bar if name in MainStrips else StatusKey)

    def testMainColoursRunFromBarToWhite(self):
        for name in MainStrips:
            strip = LoadStrip(name)
            colours = {tuple(strip.pixels[start:start + 3]) for start in range(0, len(strip.pixels), 4)}
            self.assertIn(White, colours)
            for colour in colours:
                share = (colour[0] - Bar[0]) / (255 - Bar[0])
                for value, base in zip(colour, Bar):
                    self.assertAlmostEqual(value, base + share * (255 - base), delta=1, msg=f"{name} {colour}")

    def testStatusKeyIsOnlyOutside(self):
        # Whatever has the key colour turns into the window's colour, so none of it may lie inside a picture.
        for name, size, number, _ in Cells(StatusStrips):
            cell = Cell(name, number)
            keyed = {(x, y) for y in range(size) for x in range(size) if cell[y][x] == StatusKey}
            reached = set()
            waiting = [(x, y) for x, y in keyed if x in (0, size - 1) or y in (0, size - 1)]
            while waiting:
                point = waiting.pop()
                if point in keyed and point not in reached:
                    reached.add(point)
                    x, y = point
                    waiting += [(x - 1, y), (x + 1, y), (x, y - 1), (x, y + 1)]
            self.assertEqual(keyed - reached, set(), f"{name} cell {number}")

    def testBlendingOnWhite(self):
        self.assertEqual(pictures.BlendOnWhite((0, 0, 0, 0), StatusKey), StatusKey)
        self.assertEqual(pictures.BlendOnWhite((0, 0, 0, 255), StatusKey), (0, 0, 0))
        self.assertEqual(pictures.BlendOnWhite((0, 0, 0, 51), StatusKey), (204, 204, 204))
        self.assertNotEqual(pictures.BlendOnWhite((200, 200, 200, 255), StatusKey), StatusKey)
        self.assertNotEqual(pictures.BlendOnWhite((0, 0, 0, 55), StatusKey), StatusKey)

    def testBlendingOnTheBar(self):
        self.assertEqual(pictures.BlendGlyph((255, 255, 255, 0), Bar, 16), Bar)
        self.assertEqual(pictures.BlendGlyph((255, 255, 255, 255), Bar, 16), White)
        self.assertEqual(pictures.BlendGlyph((*Bar, 255), Bar, 16), Bar)
        self.assertEqual(pictures.BlendGlyph((255, 255, 255, 128), Bar, 16), (144, 146, 149))


class CellContents(unittest.TestCase):
    def testEveryCellHoldsAPicture(self):
        for name, size, number, background in Cells(AllStrips):
            painted = sum(colour != background for row in Cell(name, number) for colour in row)
            self.assertGreater(painted, size * size * 0.1, f"{name} cell {number} is nearly empty")

    def testEveryPictureKeepsItsMargin(self):
        for name, size, number, background in Cells(AllStrips):
            left, top, right, bottom = PaintedBox(Cell(name, number), background)
            margin = size * 4 // 38
            self.assertGreaterEqual(min(left, top, size - right, size - bottom) + 1e-9, margin * 0.75,
                                    f"{name} cell {number} comes too near to its neighbour")

    def testEveryPictureIsCentredAndOfOneSize(self):
        for name, size, number, background in Cells(AllStrips):
            left, top, right, bottom = PaintedBox(Cell(name, number), background)
            unit = size / 38
            self.assertAlmostEqual((left + right) / 2, size / 2, delta=1.25 * unit, msg=f"{name} cell {number}")
            self.assertAlmostEqual((top + bottom) / 2, size / 2, delta=1.25 * unit, msg=f"{name} cell {number}")
            self.assertGreaterEqual(max(right - left, bottom - top), 25 * unit, f"{name} cell {number} is small")
            self.assertLessEqual(max(right - left, bottom - top), 31 * unit, f"{name} cell {number} is large")

    def testEveryPictureIsDistinct(self):
        for name, (size, count) in AllStrips.items():
            cells = [Cell(name, number) for number in range(count)]
            for number in range(count):
                for other in range(number):
                    differing = sum(left != right for oneRow, otherRow in zip(cells[number], cells[other])
                                    for left, right in zip(oneRow, otherRow))
                    self.assertGreater(differing, size * size * 0.02, f"{name} cells {other} and {number}")

    def testSizesShowTheSameSubjects(self):
        for small, large, factor in (("main_small.png", "main_middle.png", 2), ("main_small.png", "main_large.png", 4),
                                     ("status_small.png", "status_large.png", 2)):
            for number in range(AllStrips[small][1]):
                background = Bar if small in MainStrips else White
                one, other = ([[background if colour == StatusKey else colour for colour in row] for row in Cell(name, number)]
                              for name in (small, large))
                self.assertLess(MeanDifference(one, Shrunk(other, factor)), 4, f"{small} and {large}, cell {number}")

    def testUprightEdgesAreCrisp(self):
        for number, subject in UprightCells.items():
            colours = [colour for row in Cell("main_small.png", number) for colour in row if colour != Bar]
            solid = sum(colour == White for colour in colours)
            self.assertGreater(solid / len(colours), 0.8, f"{subject} is blurred at 38 pixels")


class ProgramIcon(unittest.TestCase):
    def setUp(self):
        self.data = (ResFolder / "vantor.ico").read_bytes()
        self.entries = pictures.DecodeIcon(self.data)

    def testDirectory(self):
        self.assertEqual([entry[:3] for entry in self.entries], IconDirectory)

    def testEntriesFollowEachOther(self):
        expected = 6 + 16 * len(IconDirectory)
        for number in range(len(IconDirectory)):
            size, offset = struct.unpack_from("<II", self.data, 6 + 16 * number + 8)
            self.assertEqual(offset, expected)
            expected += size
        self.assertEqual(expected, len(self.data))

    def testEntriesAreBitmaps(self):
        for number in range(len(IconDirectory)):
            offset = struct.unpack_from("<I", self.data, 6 + 16 * number + 12)[0]
            self.assertEqual(struct.unpack_from("<I", self.data, offset)[0], 40)

    def testCornersAreTransparentAndTheMiddleIsNot(self):
        for width, height, bits, picture in self.entries:
            with self.subTest(size=width, bits=bits):
                self.assertLess(picture.At(0, 0)[3], 128)
                self.assertLess(picture.At(width - 1, height - 1)[3], 128)
                self.assertEqual(picture.At(width // 2, height // 2)[3], 255)
                opaque = sum(picture.At(x, y)[3] == 255 for y in range(height) for x in range(width))
                self.assertGreater(opaque, width * height * 0.75)

    def testMaskedPixelsAreBlack(self):
        for width, height, bits, picture in self.entries:
            for y in range(height):
                for x in range(width):
                    red, green, blue, alpha = picture.At(x, y)
                    if alpha == 0:
                        self.assertEqual((red, green, blue), (0, 0, 0), f"{width} pixels, {bits} bits")

    def testPaletteVersionLooksLikeTheFullOne(self):
        full = {width: picture for width, _, bits, picture in self.entries if bits == 32}
        for width, height, bits, picture in self.entries:
            if bits == 8:
                for y in range(height):
                    for x in range(width):
                        if full[width].At(x, y)[3] == 255:
                            for one, other in zip(picture.At(x, y), full[width].At(x, y)):
                                self.assertAlmostEqual(one, other, delta=24)


@unittest.skipIf(shutil.which("rsvg-convert") is None, "rsvg-convert (package librsvg2-bin) is not installed")
class Renderer(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.res = Path(folder.name) / "res"
        shutil.copytree(ResFolder / "art", self.res / "art")
        shutil.copytree(ResFolder / "strips", self.res / "strips")
        shutil.copy(ResFolder / "vantor.ico", self.res)

    def Run(self, *arguments):
        return subprocess.run([sys.executable, str(ToolFolder / "render_art"), "--res", str(self.res), *arguments],
                              capture_output=True, text=True, check=False)

    # One rendering of a drawing serves all tests: it is what takes the tool its time.
    rendered = {}

    def RenderOnce(self, drawing, size):
        key = (drawing.read_bytes(), size)
        if key not in self.rendered:
            self.rendered[key] = RenderDrawing(drawing, size)
        return self.rendered[key]

    # The same in this process, with the exit code and what was told.
    def Check(self):
        told = io.StringIO()
        with unittest.mock.patch.object(render_art, "RenderDrawing", self.RenderOnce), \
                unittest.mock.patch.object(sys, "argv", ["render_art", "--res", str(self.res), "--check"]), \
                contextlib.redirect_stderr(told):
            code = render_art.Main()
        return subprocess.CompletedProcess([], code, "", told.getvalue())

    def Results(self):
        files = sorted((self.res / "strips").glob("*")) + [self.res / "vantor.ico"]
        return {file.name: file.read_bytes() for file in files}

    def testCommittedPicturesMatchTheirDrawings(self):
        result = self.Check()
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def testRenderingTwiceGivesTheSameBytes(self):
        self.assertEqual(self.Run().returncode, 0)
        first = self.Results()
        self.assertEqual(set(first), set(AllStrips) | {"vantor.ico"})
        self.assertEqual(self.Run().returncode, 0)
        self.assertEqual(self.Results(), first)

    def testCheckChangesNothing(self):
        before = self.Results()
        self.Check()
        self.assertEqual(self.Results(), before)

    def testCheckNoticesARedrawnPicture(self):
        drawing = self.res / "art" / "main" / "14_properties.svg"
        drawing.write_text(drawing.read_text().replace("</svg>", '<path d="M8 30h22"/></svg>'))
        result = self.Check()
        self.assertEqual(result.returncode, 1)
        self.assertIn("strips/main_small.png differs from its drawings in", result.stderr)

    def testCheckNoticesARedrawnIcon(self):
        drawing = self.res / "art" / "icon" / "vantor_32.svg"
        drawing.write_text(drawing.read_text().replace("</svg>", '<path fill="#fff" d="M8 26h16v3h-16z"/></svg>'))
        result = self.Check()
        self.assertEqual(result.returncode, 1)
        self.assertIn("vantor.ico at 32 pixels and 8 bits differs", result.stderr)

    def testCheckNoticesAWrongSize(self):
        shutil.copy(self.res / "strips" / "status_small.png", self.res / "strips" / "main_small.png")
        result = self.Check()
        self.assertEqual(result.returncode, 1)
        self.assertIn("strips/main_small.png is 228 x 38, but its drawings render to 684 x 38", result.stderr)

    def testCheckNoticesAMissingOrBrokenFile(self):
        (self.res / "strips" / "main_large.png").unlink()
        (self.res / "vantor.ico").write_bytes(b"nothing")
        result = self.Check()
        self.assertEqual(result.returncode, 1)
        self.assertIn("strips/main_large.png is missing", result.stderr)
        self.assertIn("vantor.ico cannot be read", result.stderr)

    def testAMissingDrawingIsNamed(self):
        (self.res / "art" / "main" / "05_up.svg").unlink()
        result = self.Run()
        self.assertEqual(result.returncode, 1)
        self.assertIn("number 5 was expected", result.stderr)
        self.assertNotIn("Traceback", result.stderr)


if __name__ == "__main__":
    unittest.main()
