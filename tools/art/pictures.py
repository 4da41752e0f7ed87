# Reads and writes the picture formats that the art renderer needs, with nothing but the standard library.

import struct
import zlib

PngSignature = b"\x89PNG\r\n\x1a\n"


class PictureError(Exception):
    pass


class Picture:
    """Rows of red, green, blue, alpha bytes."""

    def __init__(self, width, height, pixels):
        self.width = width
        self.height = height
        self.pixels = pixels
        self.colourType = None
        self.bitDepth = None
        self.interlaced = False
        self.chunkNames = []

    def At(self, x, y):
        start = (y * self.width + x) * 4
        return tuple(self.pixels[start:start + 4])


def Paeth(left, above, aboveLeft):
    estimate = left + above - aboveLeft
    distanceLeft = abs(estimate - left)
    distanceAbove = abs(estimate - above)
    distanceAboveLeft = abs(estimate - aboveLeft)
    if distanceLeft <= distanceAbove and distanceLeft <= distanceAboveLeft:
        return left
    if distanceAbove <= distanceAboveLeft:
        return above
    return aboveLeft


def UndoFilters(data, rowBytes, height, step):
    rows = []
    previous = bytearray(rowBytes)
    position = 0
    for _ in range(height):
        kind = data[position]
        row = bytearray(data[position + 1:position + 1 + rowBytes])
        position += 1 + rowBytes
        if kind == 1:
            for index in range(step, rowBytes):
                row[index] = (row[index] + row[index - step]) & 255
        elif kind == 2:
            for index in range(rowBytes):
                row[index] = (row[index] + previous[index]) & 255
        elif kind == 3:
            for index in range(rowBytes):
                left = row[index - step] if index >= step else 0
                row[index] = (row[index] + (left + previous[index]) // 2) & 255
        elif kind == 4:
            for index in range(rowBytes):
                left = row[index - step] if index >= step else 0
                aboveLeft = previous[index - step] if index >= step else 0
                row[index] = (row[index] + Paeth(left, previous[index], aboveLeft)) & 255
        elif kind != 0:
            raise PictureError("the PNG uses an unknown row filter")
        rows.append(row)
        previous = row
    return rows


def DecodePng(data):
    if data[:8] != PngSignature:
        raise PictureError("this is not a PNG file")
    position = 8
    header = palette = None
    names = []
    compressed = bytearray()
    while position < len(data):
        length, name = struct.unpack_from(">I4s", data, position)
        body = data[position + 8:position + 8 + length]
        if struct.unpack_from(">I", data, position + 8 + length)[0] != zlib.crc32(name + body):
            raise PictureError("a PNG chunk has a wrong checksum")
        names.append(name.decode("ascii"))
        if name == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif name == b"PLTE":
            palette = body
        elif name == b"IDAT":
            compressed += body
        position += 12 + length
    width, height, depth, colourType, _, _, interlace = header
    channels = {2: 3, 3: 1, 6: 4}.get(colourType)
    if depth != 8 or channels is None or interlace:
        raise PictureError("only plain 8-bit colour or palette PNG files are read here")
    rows = UndoFilters(zlib.decompress(bytes(compressed)), width * channels, height, channels)
    pixels = bytearray()
    for row in rows:
        if channels == 4:
            pixels += row
        elif channels == 3:
            for start in range(0, len(row), 3):
                pixels += row[start:start + 3] + b"\xff"
        else:
            for index in row:
                pixels += palette[index * 3:index * 3 + 3] + b"\xff"
    picture = Picture(width, height, pixels)
    picture.colourType = colourType
    picture.bitDepth = depth
    picture.interlaced = bool(interlace)
    picture.chunkNames = names
    return picture


def SmallestCompression(rows, step):
    plain = b"".join(b"\0" + bytes(row) for row in rows)
    fromAbove = bytearray()
    previous = bytes(len(rows[0]))
    for row in rows:
        fromAbove.append(2)
        fromAbove += bytes((value - above) & 255 for value, above in zip(row, previous))
        previous = row
    candidates = []
    for raw in (plain, bytes(fromAbove)):
        for strategy in (zlib.Z_DEFAULT_STRATEGY, zlib.Z_FILTERED, zlib.Z_RLE):
            packer = zlib.compressobj(9, zlib.DEFLATED, 15, 9, strategy)
            candidates.append(packer.compress(raw) + packer.flush())
    return min(candidates, key=len)


def Chunk(name, body):
    return struct.pack(">I", len(body)) + name + body + struct.pack(">I", zlib.crc32(name + body))


def EncodeOpaquePng(width, height, colours, background):
    """Writes rows of (red, green, blue) as a palette PNG, or as plain colour when a palette is too small."""
    # The background leads the palette, so that the most frequent index is zero and packs best.
    palette = [background] + sorted(set(colours) - {background})
    if len(palette) <= 256:
        indexOf = {colour: index for index, colour in enumerate(palette)}
        rows = [bytes(indexOf[colour] for colour in colours[start:start + width])
                for start in range(0, width * height, width)]
        header = struct.pack(">IIBBBBB", width, height, 8, 3, 0, 0, 0)
        middle = Chunk(b"PLTE", b"".join(bytes(colour) for colour in palette))
        step = 1
    else:
        rows = [b"".join(bytes(colour) for colour in colours[start:start + width])
                for start in range(0, width * height, width)]
        header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
        middle = b""
        step = 3
    return (PngSignature + Chunk(b"IHDR", header) + middle
            + Chunk(b"IDAT", SmallestCompression(rows, step)) + Chunk(b"IEND", b""))


def Over(value, alpha, background):
    return (value * alpha + background * (255 - alpha) + 127) // 255


def BlendGlyph(pixel, background, steps):
    """Puts a white glyph's pixel on the background, with the coverage rounded to a few steps."""
    red, _, _, alpha = pixel
    blended = Over(red, alpha, background[0])
    coverage = (blended - background[0]) * steps / (255 - background[0])
    step = max(0, min(steps, int(coverage + 0.5)))
    return tuple(base + ((255 - base) * step + steps // 2) // steps for base in background)


def BlendOnWhite(pixel, key):
    """Puts a coloured pixel on white; only a pixel that nothing covers becomes the key colour."""
    red, green, blue, alpha = pixel
    if alpha == 0:
        return key
    blended = tuple(Over(value, alpha, 255) for value in (red, green, blue))
    if blended == key:
        return (key[0], key[1], key[2] + 1)
    return blended


def MaskRows(width, height, isTransparent):
    rowBytes = (width + 31) // 32 * 4
    mask = bytearray()
    for y in range(height - 1, -1, -1):
        row = bytearray(rowBytes)
        for x in range(width):
            if isTransparent(x, y):
                row[x >> 3] |= 128 >> (x & 7)
        mask += row
    return mask


def IconHeader(width, height, bits, colourCount, bodySize):
    # An icon's bitmap counts its mask as a second picture, hence the doubled height.
    return struct.pack("<IiiHHIIiiII", 40, width, height * 2, 1, bits, 0, bodySize, 0, 0, colourCount, 0)


def IconBitmapTrueColour(picture):
    body = bytearray()
    for y in range(picture.height - 1, -1, -1):
        for x in range(picture.width):
            red, green, blue, alpha = picture.At(x, y)
            body += bytes((blue, green, red, alpha) if alpha else (0, 0, 0, 0))
    body += MaskRows(picture.width, picture.height, lambda x, y: picture.At(x, y)[3] < 128)
    return IconHeader(picture.width, picture.height, 32, 0, len(body)) + body


def ReducePalette(colours, limit):
    """Splits the colours into boxes along their widest channel and names each box by its mean."""
    boxes = [sorted(set(colours))]
    while len(boxes) < limit:
        widest = None
        for index, box in enumerate(boxes):
            for channel in range(3):
                values = [colour[channel] for colour in box]
                spread = max(values) - min(values)
                if spread and (widest is None or spread > widest[0]):
                    widest = (spread, index, channel)
        if widest is None:
            break
        _, index, channel = widest
        box = sorted(boxes.pop(index), key=lambda colour: (colour[channel], colour))
        half = len(box) // 2
        boxes += [box[:half], box[half:]]
    nearest = {}
    for box in boxes:
        mean = tuple(sum(colour[channel] for colour in box) // len(box) for channel in range(3))
        for colour in box:
            nearest[colour] = mean
    return nearest


def IconBitmapPalette(picture):
    solid = {}
    for y in range(picture.height):
        for x in range(picture.width):
            red, green, blue, alpha = picture.At(x, y)
            if alpha >= 128:
                solid[x, y] = (red, green, blue)
    nearest = ReducePalette(solid.values(), 255)
    # Masked pixels must be black, or the screen would show them inverted.
    palette = [(0, 0, 0)] + sorted(set(nearest.values()) - {(0, 0, 0)})
    indexOf = {colour: index for index, colour in enumerate(palette)}
    header = bytearray()
    for red, green, blue in palette + [(0, 0, 0)] * (256 - len(palette)):
        header += bytes((blue, green, red, 0))
    body = bytearray()
    padding = -picture.width % 4
    for y in range(picture.height - 1, -1, -1):
        for x in range(picture.width):
            body.append(indexOf[nearest[solid[x, y]]] if (x, y) in solid else 0)
        body += bytes(padding)
    body += MaskRows(picture.width, picture.height, lambda x, y: (x, y) not in solid)
    return IconHeader(picture.width, picture.height, 8, 256, len(body)) + header + body


def EncodeIcon(entries):
    """Joins (width, height, bits, bitmap) entries to an icon file."""
    directory = struct.pack("<HHH", 0, 1, len(entries))
    offset = 6 + 16 * len(entries)
    for width, height, bits, bitmap in entries:
        directory += struct.pack("<BBBBHHII", width & 255, height & 255, 0, 0, 1, bits, len(bitmap), offset)
        offset += len(bitmap)
    return directory + b"".join(bytes(bitmap) for _, _, _, bitmap in entries)


def DecodeIcon(data):
    """Returns (width, height, bits, picture) for every entry; the picture's alpha comes from the mask at 8 bits."""
    reserved, kind, count = struct.unpack_from("<HHH", data, 0)
    if reserved != 0 or kind != 1:
        raise PictureError("this is not an icon file")
    entries = []
    for number in range(count):
        width, height, _, _, planes, bits, size, offset = struct.unpack_from("<BBBBHHII", data, 6 + 16 * number)
        bitmap = data[offset:offset + size]
        if len(bitmap) != size:
            raise PictureError("an icon entry reaches past the end of the file")
        headerSize, bitmapWidth, bitmapHeight, bitmapPlanes, bitmapBits, compression = \
            struct.unpack_from("<IiiHHI", bitmap, 0)
        if (headerSize, bitmapWidth, bitmapHeight, bitmapPlanes, bitmapBits, compression) != \
                (40, width, height * 2, 1, bits, 0) or planes != 1:
            raise PictureError("an icon entry's bitmap does not match its directory line")
        if bits not in (8, 32):
            raise PictureError("an icon entry has an unexpected colour depth")
        paletteBytes = 1024 if bits == 8 else 0
        rowBytes = (width * bits + 31) // 32 * 4
        maskRowBytes = (width + 31) // 32 * 4
        if size != 40 + paletteBytes + (rowBytes + maskRowBytes) * height:
            raise PictureError("an icon entry has a wrong size")
        colourStart = 40 + paletteBytes
        maskStart = colourStart + rowBytes * height
        pixels = bytearray()
        for y in range(height - 1, -1, -1):
            for x in range(width):
                masked = bitmap[maskStart + y * maskRowBytes + (x >> 3)] & (128 >> (x & 7))
                if bits == 8:
                    index = bitmap[colourStart + y * rowBytes + x]
                    blue, green, red, _ = bitmap[40 + index * 4:44 + index * 4]
                    alpha = 0 if masked else 255
                else:
                    start = colourStart + y * rowBytes + x * 4
                    blue, green, red, alpha = bitmap[start:start + 4]
                    if bool(masked) != (alpha < 128):
                        raise PictureError("an icon entry's mask contradicts its alpha")
                pixels += bytes((red, green, blue, alpha))
        entries.append((width, height, bits, Picture(width, height, pixels)))
    return entries
