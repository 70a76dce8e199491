#!/usr/bin/env python3
"""The public headers as manual pages and as Doxygen reads them.

manual.py man DIRECTORY HEADER...   writes man3/: a page for each header, for each pair of functions of kesl and for each family of
                                    keslmx; a link for every function's name
manual.py doxygen FILE              prints a header with its comments in Doxygen's form, or a page without the links that lead out
                                    of the pages; Doxygen's input filter

In a C header every comment that begins a line speaks of the declarations that follow it at once. One that begins with a rule of dashes
begins a section; in keslmx.h that is a family.
"""
import os
import re
import sys

TITLES = {  # of the manual pages of the families of keslmx whose functions begin with the same word
    "keslAdd on matrices": "keslAdd_matrices", "keslAdd on vectors and constants": "keslAdd_vectors",
    "keslSub on matrices": "keslSub_matrices", "keslSub on vectors and constants": "keslSub_vectors",
    "keslMul by constants": "keslMul_constants", "keslMul of matrices": "keslMul_matrices",
    "keslMul of matrices and vectors": "keslMul_matrix_vector",
}


class Entry:
    """A comment and the declarations behind it."""

    def __init__(self, comment, code):
        lines = [re.sub(r"^ \*( |$)", "", line) for line in comment.rstrip("*/ \n").split("\n")]
        rule = re.match(r"/\* -{4,} ?(.*)", lines[0])
        self.title = rule[1].strip() if rule else ""
        lines[0] = "" if rule else lines[0][3:]
        self.text = "\n".join(lines).strip("\n").rstrip()
        self.code = code.partition("\n#ifdef __cplusplus\n}")[0].strip("\n")
        self.names = re.findall(r"^(?!typedef)[\w][\w *]*?\b(\w+)\(", code, re.M)


def entries(path):
    """The entries of a C header; the first is that of the header itself."""
    with open(path, encoding="utf-8") as file:
        text = file.read()
    parts = re.split(r"^(/\*.*?\*/)\n", text, flags=re.M | re.S)
    return [Entry(comment, code) for comment, code in zip(parts[1::2], parts[2::2])]


# ---- Manual pages


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\n".join("\\&" + line if line[:1] in (".", "'") else line for line in text.split("\n"))


def preformatted(text):
    return f".nf\n{escaped(text)}\n.fi\n"


def prose(text):
    """Paragraphs are filled; `Key     what it says` becomes a tagged one; what is indented stays as it is laid out."""
    out, literal = [], []

    def flush():
        if literal:
            out.append(preformatted("\n".join(literal).rstrip()) + ".PP\n")
            literal.clear()

    key = False
    for line in text.split("\n"):
        tagged = re.match(r"([A-Za-z]\w*(?:,? \w+)?)  +(\S.*)|(In place|Accuracy) (\S.*)", line)
        if key and line.startswith(" " * 6):
            out.append(escaped(line.strip()) + "\n")
        elif tagged:
            flush()
            out.append(f".TP\n.B {escaped(tagged[1] or tagged[3])}\n{escaped(tagged[2] or tagged[4])}\n")
            key = True
        elif line.startswith("    ") or (literal and not line):
            literal.append(line)
        else:
            flush()
            key = False
            out.append(escaped(line) + "\n" if line else ".PP\n")
    flush()
    return "".join(out)


def page(name, brief, header, synopsis, sections, also):
    library = header.removesuffix(".h")
    out = [f'.TH {name} 3 "" "{library}" "Stacks of small matrices"\n.SH NAME\n{escaped(name)} \\- {escaped(brief)}\n']
    out.append(f".SH SYNOPSIS\n.B #include <{header}>\n" + (".PP\n" + preformatted(synopsis) if synopsis else ""))
    out += [f".SH {title}\n{text}" for title, text in sections if text]
    out.append(".SH SEE ALSO\n" + ",\n".join(f".BR {other} (3)" for other in also).replace(")," , "),") + "\n")
    return "".join(out)


def brief(text):
    """The first sentence, without the shapes of the operands."""
    sentence = re.split(r'[.;:](?:\s|$)(?=(?:[^"]*"[^"]*")*[^"]*$)', " ".join(text.split()))[0]  # outside of quotes
    return re.sub(r"^\w+ = (?=the |what )|, \(.*", "", sentence)


def manual(directory, headers):
    target = os.path.join(directory, "man3")
    os.makedirs(target, exist_ok=True)

    def write(name, content):
        with open(os.path.join(target, name + ".3"), "w", encoding="utf-8") as file:
            file.write(content)

    for path in headers:
        header = os.path.basename(path)
        library = header.removesuffix(".h")
        first, *rest = entries(path)
        sections, pages = [("DESCRIPTION", prose(first.text.partition("\n")[2].strip("\n")))], []
        for entry in rest:
            if not entry.names:
                continue
            if library == "kesl" and entry.names[-1].endswith(("_32f", "_64f")):
                name, title, parts = re.sub("_[36][24]f$", "", entry.names[0]), brief(entry.text), (entry.code, [])
            elif entry.title:
                name, title = TITLES.get(entry.title, entry.title), brief(entry.text)
                parts = ("", [("FUNCTIONS", preformatted(entry.code))])
            else:  # versions and the like belong to the header
                sections.append((", ".join(entry.names), prose(entry.text) + ".PP\n" + preformatted(entry.code)))
                for function in entry.names:
                    write(function, f".so man3/{library}.3\n")
                continue
            write(name, page(name, title, header, parts[0], [("DESCRIPTION", prose(entry.text)), *parts[1]], [library]))
            pages.append(name)
            for function in entry.names:
                if function != name:
                    write(function, f".so man3/{name}.3\n")
        write(library, page(library, first.text.split("\n")[0].split(": ", 1)[1].rstrip("."), header, "", sections,
                            pages or ["keslmx"]))


# ---- Doxygen


def plain(text):
    return re.sub(r"([\\@<>&#%*_`|~\[\]^$])", r"\\\1", text)


def documented(path):
    """A C header: comments of kesl with a paragraph for each of their keys, those of keslmx as they are laid out."""
    first, *rest = entries(path)
    name = os.path.basename(path)
    heading, _, body = first.text.partition("\n")
    out = [f"/** @file\n@brief {plain(heading)}\n@verbatim\n{body}\n@endverbatim */\n{first.code}\n"]
    opened = False
    for entry in rest:
        if entry.title:
            out.append(("/** @} */\n" if opened else "") + f"/** @name {entry.title}\n@verbatim\n{entry.text}\n@endverbatim\n@{{ */\n")
            if not entry.text:
                out[-1] = out[-1].replace("@verbatim\n\n@endverbatim\n", "")
            opened = True
        if entry.title or not entry.text:
            out.append(entry.code + "\n")
            continue
        declarations = re.split(r"(?<=;)\n(?=\w)", entry.code)
        text = f"/** @brief {plain(brief(entry.text))}\n@verbatim\n{entry.text}\n@endverbatim */\n"
        out += [text + declaration + "\n" for declaration in declarations]
    return "\n".join(out) + ("/** @} */\n" if opened else "") + "#endif"


def lines_documented(path):
    """The C++ header: comments of whole lines at the margin belong to what follows."""
    with open(path, encoding="utf-8") as file:
        text = file.read()
    text = re.sub(r"^ *template <class E> struct like .*\n", "", text, flags=re.M)  # is private; Doxygen links to it all the same
    text = re.sub(r"\A// (.*)\n((?://.*\n)*)", lambda m: f"/** @file\n@brief {plain(m[1])}\n@verbatim\n"
                  + re.sub(r"^// ?", "", m[2], flags=re.M) + "@endverbatim */\n", text)
    return re.sub(r"^// (?!----)(.*)$", lambda m: "/// " + plain(m[1]), text, flags=re.M)


def page_of_site(path):
    """A page: links to other pages stay, links to sources become their names."""
    with open(path, encoding="utf-8") as file:
        text = file.read()
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

    def link(match):
        target = match[2].partition("#")[0]
        place = os.path.relpath(os.path.join(os.path.dirname(os.path.abspath(path)), target), root)
        inside = re.match(r"https?:|$", target) or re.fullmatch(r"(README|CHANGELOG|docs/\w+)\.md|include/\w+\.hp?p?", place)
        if "#" in match[2] and not match[2].startswith("http"):
            return f"[{match[1]}](#{anchor(target or path, match[2].partition('#')[2])})"
        if place.startswith("include/") and inside:
            return f'@ref {os.path.basename(place)} "{match[1]}"'
        return match[0] if inside else f"`{place}`" if match[1].strip("`") in (target, place) else f"{match[1]} (`{place}`)"

    text = re.sub(r"(?<!!)\[([^\]]*)\]\(([^)]+)\)", link, text)
    return re.sub(r"^(##+ (.*))$", lambda m: f"{m[1]} {{#{anchor(path, slug(m[2]))}}}", text, flags=re.M)


def slug(heading):
    """What links to a heading call it."""
    return re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")


def anchor(page, name):
    """A heading's name among those of all pages."""
    return f"{os.path.splitext(os.path.basename(page))[0].lower()}-{name}"


if sys.argv[1] == "man":
    manual(sys.argv[2], sys.argv[3:])
elif sys.argv[1] == "doxygen":
    filters = {".h": documented, ".hpp": lines_documented, ".md": page_of_site}
    print(filters[os.path.splitext(sys.argv[2])[1]](sys.argv[2]))
