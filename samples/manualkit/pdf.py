"""A small PDF 1.4 writer: pages with text, lines, boxes and form fields, and bookmarks. Text stands in the two built-in
Helvetica fonts, Japanese text in a font of the reader's Japanese collection (PDF reference, "Predefined CMaps")."""

WIDTH, HEIGHT = 595, 842  # A4 in points
FIELD_LOOK = b"/F1 12 Tf 0.1 g"


def is_western(text):
    try:
        text.encode("cp1252")
        return True
    except UnicodeEncodeError:
        return False


def pdf_text(text):
    """A string object in the encoding of the Helvetica fonts, or in UTF-16 with a mark where they lack a character."""
    if not is_western(text):
        return b"<FEFF" + hex_text(text) + b">"
    escaped = text.replace("\\", "\\\\").replace("(", "\\(").replace(")", "\\)")
    return b"(" + escaped.encode("cp1252") + b")"


def hex_text(text):
    return text.encode("utf-16-be").hex().upper().encode()


def references(numbers):
    return b" ".join(b"%d 0 R" % number for number in numbers)


class PdfPage:
    def __init__(self):
        self.drawing = []
        self.fields = []  # (name, rectangle)

    def field(self, x, y, width, height, name):
        """A text field that a program fills in, not the reader."""
        self.fields.append((name, (x, y, x + width, y + height)))

    def text(self, x, y, text, size=10, bold=False, grey=0.1):
        if is_western(text):
            font, shown = b"F2" if bold else b"F1", pdf_text(text)
        else:
            font, shown = b"F3", b"<" + hex_text(text) + b">"
        self.drawing.append(b"BT /%s %d Tf %.2f g %d %d Td %s Tj ET" % (font, size, grey, x, y, shown))

    def box(self, x, y, width, height, colour):
        self.drawing.append(b"%.3f %.3f %.3f rg %d %d %d %d re f" % (*colour, x, y, width, height))

    def frame(self, x, y, width, height):
        self.drawing.append(b"0.13 0.19 0.24 RG 1.2 w %d %d %d %d re S" % (x, y, width, height))

    def line(self, *points, width=1.0, grey=0.7):
        steps = b" ".join(b"%d %d %s" % (x, y, b"l" if index else b"m") for index, (x, y) in enumerate(points))
        self.drawing.append(b"%.2f G %.1f w %s S" % (grey, width, steps))


class PdfDocument:
    def __init__(self, title):
        self.title = title
        self.pages = []
        self.bookmarks = []  # (text, page index)

    def add_page(self, bookmark=""):
        self.pages.append(PdfPage())
        if bookmark:
            self.bookmarks.append((bookmark, len(self.pages) - 1))
        return self.pages[-1]

    def bytes(self):
        """Objects: 1 catalogue, 2 page tree, 3 and 4 fonts, 5 information, 6 outline, 7 to 9 the Japanese font, then
        pages, bookmarks, fields."""
        first_page = 10
        first_mark = first_page + 2 * len(self.pages)
        page_number = [first_page + 2 * index for index in range(len(self.pages))]
        kids = references(page_number)
        first_field = first_mark + len(self.bookmarks)
        fields = [(page, *field) for page in range(len(self.pages)) for field in self.pages[page].fields]
        objects = [
            b"<< /Type /Catalog /Pages 2 0 R /Outlines 6 0 R /PageMode /UseOutlines%s >>"
            % self.form(range(first_field, first_field + len(fields))),
            b"<< /Type /Pages /Count %d /Kids [%s] >>" % (len(self.pages), kids),
            b"<< /Type /Font /Subtype /Type1 /Name /F1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>",
            b"<< /Type /Font /Subtype /Type1 /Name /F2 /BaseFont /Helvetica-Bold /Encoding /WinAnsiEncoding >>",
            b"<< /Title %s /Author (Vantor) >>" % pdf_text(self.title),
            b"<< /Type /Outlines /Count %d /First %d 0 R /Last %d 0 R >>"
            % (len(self.bookmarks), first_mark, first_mark + len(self.bookmarks) - 1),
            b"<< /Type /Font /Subtype /Type0 /BaseFont /HeiseiKakuGo-W5 /Encoding /UniJIS-UCS2-HW-H"
            b" /DescendantFonts [8 0 R] >>",
            b"<< /Type /Font /Subtype /CIDFontType0 /BaseFont /HeiseiKakuGo-W5 /FontDescriptor 9 0 R"
            b" /DW 1000 /W [231 632 500] /CIDSystemInfo << /Registry (Adobe) /Ordering (Japan1) /Supplement 2 >> >>",
            b"<< /Type /FontDescriptor /FontName /HeiseiKakuGo-W5 /Flags 4 /FontBBox [-92 -250 1010 922]"
            b" /ItalicAngle 0 /Ascent 752 /Descent -221 /CapHeight 709 /StemV 114 >>",
        ]
        for index, (number, page) in enumerate(zip(page_number, self.pages)):
            stream = b"\n".join(page.drawing)
            own_fields = [first_field + place for place, field in enumerate(fields) if field[0] == index]
            objects.append(
                b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 %d %d] /Contents %d 0 R"
                b" /Resources << /Font << /F1 3 0 R /F2 4 0 R /F3 7 0 R >> >>%s >>"
                % (WIDTH, HEIGHT, number + 1, b" /Annots [%s]" % references(own_fields) if own_fields else b"")
            )
            objects.append(b"<< /Length %d >>\nstream\n%s\nendstream" % (len(stream), stream))
        for index, (text, page) in enumerate(self.bookmarks):
            links = b" /Prev %d 0 R" % (first_mark + index - 1) if index else b""
            if index + 1 < len(self.bookmarks):
                links += b" /Next %d 0 R" % (first_mark + index + 1)
            objects.append(
                b"<< /Title %s /Parent 6 0 R /Dest [%d 0 R /Fit]%s >>" % (pdf_text(text), page_number[page], links)
            )
        for page, name, area in fields:
            objects.append(
                b"<< /Type /Annot /Subtype /Widget /FT /Tx /Ff 1 /F 4 /T %s /V () /DA (%s) /P %d 0 R"
                b" /Rect [%d %d %d %d] >>" % (pdf_text(name), FIELD_LOOK, page_number[page], *area)
            )
        return self.assemble(objects)

    @staticmethod
    def form(numbers):
        """The catalogue's entry for the fields with these object numbers. A viewer draws them itself."""
        if not numbers:
            return b""
        return b" /AcroForm << /Fields [%s] /NeedAppearances true /DR << /Font << /F1 3 0 R >> >> /DA (%s) >>" % (
            references(numbers),
            FIELD_LOOK,
        )

    @staticmethod
    def assemble(objects):
        """Header, numbered objects, and the table of their offsets."""
        body = b"%PDF-1.4\n%\xe2\xe3\xcf\xd3\n"
        offsets = []
        for number, content in enumerate(objects, 1):
            offsets.append(len(body))
            body += b"%d 0 obj\n%s\nendobj\n" % (number, content)
        table = b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
        return (
            body
            + b"xref\n0 %d\n0000000000 65535 f \n%s" % (len(objects) + 1, table)
            + b"trailer\n<< /Size %d /Root 1 0 R /Info 5 0 R >>\nstartxref\n%d\n%%%%EOF\n"
            % (len(objects) + 1, len(body))
        )
