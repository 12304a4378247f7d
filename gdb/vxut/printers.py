"""The table of printers: which class is shown by which printer."""

import functools

import gdb
import gdb.printing

from . import containers, streams, tokens, values


def _stream(printer, **members):
    return functools.partial(printer, **members)


_TARGET = {"target": "m_target", "transferred": "m_transferred"}
_FILE = {"descriptor": "m_fd", "open": "m_open", "error": "m_errno", "atEnd": "m_atEnd"}

_PRINTERS = {
    "Stack": containers.Stack,
    "framework::Exception": values.Failure,
    "utility::Arguments": containers.Arguments,
    "utility::Buffer": streams.Buffer,
    "utility::BufferStream": streams.Buffer,
    "utility::BufferStreamElement": _stream(streams.Buffer, userValue="m_userValue", userWord1="m_userWord1",
                                            userWord2="m_userWord2"),
    "utility::BufferStreamList": containers.StreamList,
    "utility::BufferStreamQueue": containers.StreamQueue,
    "utility::CircularStream": streams.Circular,
    "utility::DateTime": values.DateTime,
    "utility::DirIterator": values.DirIterator,
    "utility::DynamicStream": streams.Dynamic,
    "utility::Environment": containers.Environment,
    "utility::FCPortAddress": values.FCPortAddress,
    "utility::FastSortedStringDirectory": containers.StringDirectory,
    "utility::FastStringDirectory": containers.FastStringDirectory,
    "utility::FileInputStream": _stream(streams.File, **_FILE),
    "utility::FileOutputStream": _stream(streams.File, **_FILE),
    "utility::GetStream": streams.Buffer,
    "utility::IPV4Address": values.IPV4Address,
    "utility::IPV6Address": values.IPV6Address,
    "utility::ISCSIPortAddress": values.ISCSIPortAddress,
    "utility::Int64Array": containers.numbers("long long"),
    "utility::IntArray": containers.numbers("int"),
    "utility::ItemArray": containers.derived_objects("framework::Item"),
    "utility::ItemDirectory": containers.ItemDirectory,
    "utility::List": containers.List,
    "utility::ListIterator": containers.ListIterator,
    "utility::Map": containers.HashMap,
    "utility::MapEntity": containers.HashMap,
    "utility::NullStream": _stream(streams.Plain, inputSize="m_inputSize", inputRemaining="m_inputRemaining",
                                   written="m_outputCount", read="m_inputCount"),
    "utility::Options": containers.Options,
    "utility::PagingVirtualPutStream": _stream(streams.Buffer, **_TARGET, column="m_column", line="m_line", quit="m_quit"),
    "utility::ParameterList": values.ParameterList,
    "utility::Path": values.Path,
    "utility::PortAddressArray": containers.derived_objects("utility::PortAddress"),
    "utility::PutStream": streams.Buffer,
    "utility::SerialNumber": values.Hexadecimal,
    "utility::SerialNumberArray": containers.objects("utility::SerialNumber"),
    "utility::ShortArray": containers.numbers("short"),
    "utility::StringArray": containers.texts,
    "utility::StringDirectory": containers.StringDirectory,
    "utility::StringMap": containers.string_map,
    "utility::TokenArray": containers.token_numbers,
    "utility::TokenSet": containers.token_numbers,
    "utility::UInt64Array": containers.numbers("unsigned long long"),
    "utility::UIntArray": containers.numbers("unsigned int"),
    "utility::URL": values.URL,
    "utility::UShortArray": containers.numbers("unsigned short"),
    "utility::VirtualGetStream": _stream(streams.Buffer, source="m_source", base="m_base", received="m_received"),
    "utility::VirtualPutStream": _stream(streams.Buffer, **_TARGET),
    "utility::WWN": values.Hexadecimal,
    "utility::WWNArray": containers.objects("utility::WWN"),
}


class _Printers(gdb.printing.PrettyPrinter):
    """Selects a printer by the name of the value's class. gdb's command `disable pretty-printer` knows the names."""

    def __init__(self):
        super().__init__("vxut", [gdb.printing.SubPrettyPrinter(name) for name in sorted(_PRINTERS) + ["token"]])
        self.switches = {switch.name: switch for switch in self.subprinters}

    def __call__(self, value):
        kind = value.type
        if kind.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            kind = kind.target()
            value = value.referenced_value()
        if kind.unqualified().name in tokens.NAMES:
            return values.Token(value) if self.switches["token"].enabled else None
        name = kind.strip_typedefs().unqualified().name
        if name not in _PRINTERS or not self.switches[name].enabled:
            return None
        return _PRINTERS[name](value)


def register():
    """Registers the printers with the library that gdb is loading, or, when called by hand, for every program."""
    gdb.printing.register_pretty_printer(gdb.current_objfile(), _Printers(), replace=True)
