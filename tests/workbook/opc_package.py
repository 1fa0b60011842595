"""A package of parts, looked over for what makes a program refuse it: names, types, relationships, the order of elements."""
import io
import posixpath
import re
import xml.etree.ElementTree as ET
import zipfile
from collections import Counter

import ooxml_rules as rules

MAIN, LINKS = f"{{{rules.MAIN}}}", f"{{{rules.LINKS}}}"
SPACE = "{http://www.w3.org/XML/1998/namespace}space"


def local(name):
    return name.rsplit("}", 1)[-1]


class Package:
    """One book; `faults` holds a line for each thing that is wrong."""

    def __init__(self, data, name=""):
        self.name, self.faults, self.trees, self.types = name, [], {}, {}
        try:
            self.zip = zipfile.ZipFile(io.BytesIO(data))
            broken = self.zip.testzip()
        except (zipfile.BadZipFile, EOFError, ValueError) as error:
            self.fault("", f"no package: {error}")
            return
        if broken:
            self.fault(broken, "wrong check sum")
        self.names = self.zip.namelist()
        self.check_names()
        self.read_types()
        self.links = {part: self.read_links(part) for part in ["", *self.names] if not self.is_plumbing(part)}
        self.check_reach()
        for part in self.names:
            self.check_part(part)
        self.check_book()

    def check_book(self):
        """What only a workbook is asked for."""

    def fault(self, part, text):
        self.faults.append(f"{self.name}: {part}: {text}")

    @staticmethod
    def is_plumbing(part):
        return part == "[Content_Types].xml" or part.endswith(".rels") or part.endswith("/")

    # --- the package

    def check_names(self):
        for name, count in Counter(name.lower() for name in self.names).items():
            if count > 1:
                self.fault(name, "twice in the package")
        for name in self.names:
            if name.startswith("/") or "\\" in name or any(step in ("", ".", "..") for step in name.split("/")):
                self.fault(name, "is no name of a part")
        if not self.names or "[Content_Types].xml" not in self.names:
            self.fault("[Content_Types].xml", "is missing")

    def tree(self, part):
        if part not in self.trees:
            try:
                self.trees[part] = ET.fromstring(self.zip.read(part))
            except (ET.ParseError, KeyError) as error:
                self.fault(part, f"can't be parsed: {error}")
                self.trees[part] = ET.Element("nothing")
        return self.trees[part]

    def read_types(self):
        defaults, overrides = {}, {}
        for item in self.tree("[Content_Types].xml"):
            if local(item.tag) == "Default":
                key, known = item.get("Extension", "").lower(), defaults
            else:
                key, known = item.get("PartName", ""), overrides
                if not key.startswith("/") or key[1:] not in self.names:
                    self.fault("[Content_Types].xml", f"speaks of {key}, which is not there")
            if key in known:
                self.fault("[Content_Types].xml", f"tells {key} twice")
            known[key] = item.get("ContentType")
        for part in self.names:
            kind = overrides.get("/" + part) or defaults.get(part.rsplit(".", 1)[-1].lower())
            self.types[part] = kind
            if not kind and part != "[Content_Types].xml":
                self.fault(part, "has no content type")

    def read_links(self, part):
        """id -> (type's last word, target or nothing when it lies outside)."""
        folder, name = posixpath.split(part)
        rels = posixpath.join(folder, "_rels", name + ".rels")
        links = {}
        if rels not in self.names:
            return links
        for item in self.tree(rels):
            identity, kind, target = item.get("Id"), item.get("Type"), item.get("Target")
            if not identity or not kind or target is None:
                self.fault(rels, f"{identity} lacks an attribute")
                continue
            if identity in links or not re.match(r"[A-Za-z_][\w.-]*$", identity):
                self.fault(rels, f"the id {identity} is twice there, or none")
            outside = item.get("TargetMode") == "External"
            path = None if outside else posixpath.normpath(posixpath.join("/", folder, target)).lstrip("/")
            if path is not None and "#" not in target and path not in self.names:
                self.fault(rels, f"{identity} leads to {path}, which is not there")
            links[identity] = (posixpath.basename(kind), path)
            expected = rules.LINK_TYPES.get(posixpath.basename(kind))
            if path in self.types and expected and self.types[path] not in expected:
                self.fault(path, f"is {self.types[path]}, but {rels} takes it for {posixpath.basename(kind)}")
        return links

    def check_reach(self):
        reached, waiting = set(), [""]
        while waiting:
            for _, target in self.links.get(waiting.pop(), {}).values():
                if target in self.names and target not in reached:
                    reached.add(target)
                    waiting.append(target)
        for part in self.names:
            if not self.is_plumbing(part) and part not in reached:
                self.fault(part, "no relationship leads here")
            if part.endswith(".rels"):
                folder, name = posixpath.split(part)
                source = posixpath.join(posixpath.dirname(folder), name[:-5])
                if part != "_rels/.rels" and source not in self.names:
                    self.fault(part, "relationships of no part")

    def check_part(self, part):
        kind = self.types.get(part) or ""
        data = self.zip.read(part)
        magic = rules.MAGIC.get(posixpath.splitext(part)[1].lower())
        if magic and not data.startswith(magic):
            self.fault(part, "does not begin as its extension says")
        if kind == rules.LINK_TYPES["package"][0]:
            self.faults += type(self)(data, f"{self.name}!{part}").faults
        if part.endswith((".xml", ".rels", ".vml")) or kind.endswith("+xml"):
            self.check_elements(part, self.tree(part), data)

    # --- the XML of a part

    def check_elements(self, part, root, data):
        for prefix in root.get(f"{{{rules.COMPATIBILITY}}}Ignorable", "").split():
            if f"xmlns:{prefix}=".encode() not in data:
                self.fault(part, f"the prefix {prefix} may be ignored, but is not declared")
        links = self.links.get(part, {})
        for element in root.iter():
            for key, value in element.attrib.items():
                if key.startswith(LINKS) and value and value not in links:
                    self.fault(part, f"{local(element.tag)} speaks of the relationship {value}, which is not there")
            for attribute in rules.REQUIRED.get(element.tag, ()):
                if element.get(attribute) is None:
                    self.fault(part, f"{local(element.tag)} without {local(attribute)}")
            self.check_order(part, element)
            if element.tag == MAIN + "t" and element.text and element.text != element.text.strip() \
                    and element.get(SPACE) != "preserve":
                self.fault(part, f"blanks around {element.text[:20]!r} get lost")
        for element in root.iter(MAIN + "font"):
            self.check_once(part, element)

    def check_once(self, part, element):
        for name, count in Counter(local(child.tag) for child in element).items():
            if count > 1:
                self.fault(part, f"{local(element.tag)} with {count} {name}")

    @staticmethod
    def children(element):
        """With the first choice of what is written in several forms in its place."""
        for child in element:
            if child.tag == f"{{{rules.COMPATIBILITY}}}AlternateContent":
                yield from (child[0] if len(child) else ())
            else:
                yield child

    def check_order(self, part, element):
        order = rules.ORDERS.get(element.tag)
        if order is None:
            return
        places = {name.rstrip("*"): place for place, name in enumerate(order)}
        last, before = -1, ""
        for child in self.children(element):
            name = local(child.tag)
            place = places.get(name)
            if place is None:
                self.fault(part, f"{name} has no place in {local(element.tag)}")
                continue
            if element.tag not in rules.MIXED and place < last:
                self.fault(part, f"{local(element.tag)}: {name} behind {before}")
            if place == last and not order[place].endswith("*"):
                self.fault(part, f"{local(element.tag)}: {name} twice")
            last, before = place, name
