"""Shows strings, lists and sets as what they stand for. GDB loads it with the library, from where that is installed."""

import gdb
import gdb.printing


class StringPrinter:
    """VynUString as its text."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        record = self.value["m_oRep"]
        if self.value["m_pRep"] != record.address:
            return "<not constructed>"
        units = record["m_pText"].cast(gdb.lookup_type("char16_t").pointer())
        return units.lazy_string(length=int(record["m_ulLength"]))


class ListPrinter:
    """VynUStringList as its strings."""

    def __init__(self, value):
        self.strings = value["m_oStrings"]
        self.vector = gdb.default_visualizer(self.strings)

    def to_string(self):
        return None if self.vector else self.strings

    def children(self):
        return self.vector.children() if self.vector else iter(())

    def display_hint(self):
        return "array"


class CharSetPrinter:
    """VynCharSet as name and number."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        number = int(self.value)
        names = [field.name for field in self.value.type.fields() if field.enumval == number]
        return f"{names[0] if names else 'unknown set'} ({number})"


printers = gdb.printing.RegexpCollectionPrettyPrinter("vynulib64")
printers.add_printer("VynUString", "^VynUString$", StringPrinter)
printers.add_printer("VynUStringList", "^VynUStringList$", ListPrinter)
printers.add_printer("VynCharSet", "^VynCharSet$", CharSetPrinter)
gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)
