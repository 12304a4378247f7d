"""The command `info vxut-locks`: who holds and who waits for the library's locks.

gdb cannot list the objects of a class, so the command collects them where it can: global variables, variables and
arguments of the functions on the stacks, and the members of all these. A lock that is only on the heap is found while a
thread is in one of its operations, or in an operation of an object that contains it.
"""

import re

import gdb

from .memory import ERRORS, Corrupt, corrupt

_MOST_FRAMES = 200
_MOST_LOCKS = 1000
_MOST_ELEMENTS = 64
_DEEPEST = 4

# Classes that consist of a mutex and perhaps a condition, and the one that is a read-write lock.
_MUTEX_CLASSES = ("utility::Locker", "utility::Waiter", "utility::BufferStreamList")
_RWLOCK_CLASS = "framework::thread::PosixRWLock"
_LOCK_CLASSES = _MUTEX_CLASSES + (_RWLOCK_CLASS,)
# Classes of which global variables are looked for.
_GLOBAL_CLASSES = _LOCK_CLASSES + ("utility::List", "utility::BufferStreamQueue")

# The registers of a system call, the first argument and the number, and the numbers of futex: of x86-64 and 32-bit ARM.
_SYSTEM_CALLS = (("rdi", "orig_rax", (202,)), ("r0", "r7", (240, 422)))
# What a thread waits for whose system call waits for a word of this member.
_MEMBERS = {"m_mutex": "the lock", "m_lock": "the lock", "m_condition": "a signal"}
_CONTENDED = 2

# What a thread in an operation waits for.
_OPERATIONS = {
    "lock": "the lock", "Lock": "the lock",
    "readLock": "the lock, to read", "writeLock": "the lock, to write",
    "wait": "a signal", "waitMicroseconds": "a signal", "waitUntil": "a signal", "waitNoLock": "a signal",
    "waitMicrosecondsNoLock": "a signal", "Wait": "a signal",
}

_VARIABLE = re.compile(r"\d+:\s+(?:static )?(?:const )?(?:%s) ?\*?(.+?)(?:\[\d+\])*;$" % "|".join(_GLOBAL_CLASSES))
_POINTERS = (gdb.TYPE_CODE_PTR, gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF)


def _plain(kind):
    return kind.strip_typedefs().unqualified()


def _address_in(frame, name):
    """Returns the address that a variable of a frame points or refers to, or None if it is not known."""
    try:
        value = frame.read_var(name)
        if value.is_optimized_out:
            return None
        pointer = value if value.type.strip_typedefs().code == gdb.TYPE_CODE_PTR else value.referenced_value().address
        return int(pointer) or None
    except ERRORS:
        return None


def _waited_for(frame):
    """Returns the address of the word that a thread with this newest frame waits for in a system call, or None."""
    for argument, number, futex_numbers in _SYSTEM_CALLS:
        try:
            if int(frame.read_register(number)) in futex_numbers:
                register = frame.read_register(argument)
                return int(register) & ((1 << 8 * register.type.sizeof) - 1)
        except ERRORS:
            pass
    return None


def _around_mutex(lock_class, mutex):
    """Returns the address of the object of a class with this mutex, or None if there is no mutex that threads wait for."""
    if mutex is None or lock_class not in _MUTEX_CLASSES:
        return None
    try:
        kind = gdb.lookup_type(lock_class)
        member = [field for field in kind.fields() if field.name == "m_mutex"][0]
        data = gdb.Value(mutex).cast(member.type.pointer())["__data"]
        return mutex - member.bitpos // 8 if int(data["__lock"]) == _CONTENDED else None
    except ERRORS:
        return None


class _Layouts:
    """Where the objects of a type contain locks."""

    def __init__(self):
        self.known = {}

    def locks_in(self, kind, depth=0):
        """Returns for each lock its class, its offset in bytes and the path to it, such as ".m_waiter"."""
        kind = _plain(kind)
        if kind.name in _LOCK_CLASSES:
            return [(kind.name, 0, "")]
        if depth >= _DEEPEST:
            return []
        if kind.code == gdb.TYPE_CODE_ARRAY:
            return self._locks_in_array(kind, depth)
        if kind.code != gdb.TYPE_CODE_STRUCT:
            return []
        key = (kind.name or str(kind), depth)
        if key not in self.known:
            self.known[key] = self._locks_in_members(kind, depth)
        return self.known[key]

    def _locks_in_array(self, kind, depth):
        first, last = kind.range()
        element = kind.target()
        inner = self.locks_in(element, depth + 1)
        return [(name, index * element.sizeof + offset, "[%d]%s" % (index, path))
                for index in range(min(last - first + 1, _MOST_ELEMENTS)) for name, offset, path in inner]

    def _locks_in_members(self, kind, depth):
        found = []
        for field in kind.fields():
            # A static member and a virtual base have no position.
            if getattr(field, "bitpos", None) is None:
                continue
            member = "" if field.is_base_class or not field.name else "." + field.name
            found += [(name, field.bitpos // 8 + offset, member + path)
                      for name, offset, path in self.locks_in(field.type, depth + 1)]
        return found


class _Thread:
    """A thread, the word that it waits for in a system call, and the lock for which it waits."""

    def __init__(self, thread):
        self.thread = thread
        self.number = thread.ptid[1]
        self.word = None
        self.awaited = None
        self.reason = None

    def __str__(self):
        name = self.thread.name
        return "thread %d (LWP %d)%s" % (self.thread.num, self.number, ' "%s"' % name if name else "")

    def frames(self):
        """Iterates over the frames and their levels, as far as they can be unwound."""
        try:
            self.thread.switch()
            frame = gdb.newest_frame()
            for level in range(_MOST_FRAMES):
                if frame is None:
                    return
                yield level, frame
                frame = frame.older()
        except ERRORS:
            return


class _Locks:
    """The locks that were found, and all threads."""

    def __init__(self):
        self.layouts = _Layouts()
        self.places = {}
        self.threads = [_Thread(thread) for thread in sorted(gdb.selected_inferior().threads(), key=lambda each: each.num)]
        self.owners = {thread.number: thread for thread in self.threads}

    def add_object(self, kind, address, name):
        """Adds the locks in the object of a type at an address."""
        for lock_class, offset, path in self.layouts.locks_in(kind):
            place = (lock_class, address + offset)
            if address != 0 and len(self.places) < _MOST_LOCKS and not self.places.get(place):
                self.places[place] = "%s%s" % (path.lstrip(".") + " of " if path and name else "", name)

    def add_value(self, value, name):
        """Adds the locks in an object, or in the object to which a pointer or a reference points."""
        kind = value.type.strip_typedefs()
        if value.is_optimized_out:
            return
        if kind.code == gdb.TYPE_CODE_PTR:
            self.add_object(kind.target(), int(value), name)
        elif kind.code in _POINTERS:
            self.add_object(kind.target(), int(value.referenced_value().address), name)
        elif value.address is not None:
            self.add_object(kind, int(value.address), name)

    def add_globals(self):
        # A basic regular expression; gdb takes the first backslash for itself.
        classes = r"\\|".join(_GLOBAL_CLASSES)
        for line in gdb.execute("info variables -q -n -t " + classes, to_string=True).splitlines():
            match = _VARIABLE.match(line)
            if match is None:
                continue
            name = match.group(1)
            symbols = gdb.lookup_static_symbols(name)
            if not symbols:
                symbols = [symbol for symbol in [gdb.lookup_global_symbol(name)] if symbol is not None]
            for symbol in symbols:
                try:
                    self.add_value(symbol.value(), name)
                except ERRORS:
                    pass

    def add_stacks(self):
        for thread in self.threads:
            for level, frame in thread.frames():
                self._see_waiting(thread, level, frame)
                self._add_frame(frame)

    def _see_waiting(self, thread, level, frame):
        """Notes for what the thread waits: the innermost operation of a lock that has called something."""
        if level == 0:
            thread.word = _waited_for(frame)
        lock_class, _, operation = (frame.name() or "").rpartition("::")
        if thread.awaited is not None or level == 0 or lock_class not in _LOCK_CLASSES or operation not in _OPERATIONS:
            return
        # The compiler does not keep `this` where it is not needed after the call.
        address = _address_in(frame, "this") or _around_mutex(lock_class, thread.word)
        if address is not None:
            thread.awaited = (lock_class, address)
            thread.reason = _OPERATIONS[operation]

    def _add_frame(self, frame):
        try:
            block = frame.block()
            line = frame.find_sal().line
        except (RuntimeError, gdb.error):
            return
        while block is not None:
            for symbol in block:
                self._add_symbol(symbol, frame, line)
            if block.function is not None:
                return
            block = block.superblock

    def _add_symbol(self, symbol, frame, line):
        # A variable that is declared on a later line does not exist yet.
        if not (symbol.is_argument or symbol.is_variable) or (symbol.is_variable and line and symbol.line > line):
            return
        kind = symbol.type.strip_typedefs()
        if not self.layouts.locks_in(kind.target() if kind.code in _POINTERS else kind):
            return
        function = frame.name() or "?"
        # `this` of an operation of a lock names nothing.
        name = "" if function.rpartition("::")[0] in _LOCK_CLASSES else "%s in %s" % (symbol.name, function)
        try:
            self.add_value(symbol.value(frame), name)
        except ERRORS:
            pass

    def add_awaited(self):
        for thread in self.threads:
            if thread.awaited is not None:
                self.places.setdefault(thread.awaited, "")
            elif thread.word is not None:
                self._match_word(thread)

    def _match_word(self, thread):
        """Notes for what a thread waits of which the stack does not tell: the lock with the word that it waits for."""
        for lock_class, address in self.places:
            for field in gdb.lookup_type(lock_class).fields():
                offset = thread.word - address - getattr(field, "bitpos", 0) // 8
                if field.name in _MEMBERS and 0 <= offset < field.type.sizeof:
                    thread.awaited = (lock_class, address)
                    thread.reason = _MEMBERS[field.name]
                    return

    def holder(self, number):
        """Returns the text for the thread with the number of a mutex's owner."""
        return str(self.owners[number]) if number in self.owners else "LWP %d, which is not a thread of this process" % number

    def describe(self, place):
        """Returns the lines about a lock."""
        lock_class, address = place
        try:
            lock = gdb.Value(address).cast(gdb.lookup_type(lock_class).pointer()).dereference()
            state = self._rwlock_state(lock) if lock_class == _RWLOCK_CLASS else self._mutex_state(lock)
        except ERRORS as error:
            state = corrupt(error)
        name = self.places[place]
        yield "%s 0x%x%s: %s" % (lock_class, address, " (%s)" % name if name else "", state)
        for thread in self.threads:
            if thread.awaited == place:
                yield "    %s waits for %s" % (thread, thread.reason)

    def _mutex_state(self, lock):
        data = lock["m_mutex"]["__data"]
        locked, owner, kind = int(data["__lock"]), int(data["__owner"]), int(data["__kind"])
        if kind == -1:
            return "destroyed"
        if not 0 <= kind <= 0xFFF or not 0 <= locked <= 2 or owner < 0:
            raise Corrupt("not a mutex")
        if locked == 0:
            return "free"
        return "held by " + self.holder(owner) if owner != 0 else "being locked or unlocked"

    def _rwlock_state(self, lock):
        data = lock["m_lock"]["__data"]
        writer, readers, depth = int(data["__cur_writer"]), int(data["__readers"]) >> 3, int(lock["m_depth"])
        if writer < 0 or readers > 0xFFFFFF:
            raise Corrupt("not a lock")
        if writer != 0:
            return "held for writing by %s%s" % (self.holder(writer), ", %d times" % depth if depth > 1 else "")
        return "held for reading, %d times" % readers if readers != 0 else "free"


class _InfoLocks(gdb.Command):
    """Show who holds and who waits for the locks of the VXut library.
Usage: info vxut-locks [EXPRESSION]

Without EXPRESSION, shows each Locker, Waiter, BufferStreamList and PosixRWLock that is, or is a member of, a global
variable or a variable or argument of a function on some thread's stack, and each that a thread waits for. With
EXPRESSION, shows the locks of that object, or of the object to which it points. Works with core files. The readers of a
lock are counted but cannot be named."""

    def __init__(self):
        super().__init__("info vxut-locks", gdb.COMMAND_STATUS, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, _from_tty):
        thread = gdb.selected_thread()
        if thread is None:
            raise gdb.GdbError("There is no process and no core file.")
        frame = gdb.selected_frame()
        locks = _Locks()
        try:
            # Before the threads are switched: the expression can name variables of the selected frame.
            if argument:
                locks.add_value(gdb.parse_and_eval(argument), argument)
                if not locks.places:
                    raise gdb.GdbError("%s contains no lock of the library." % argument)
            else:
                locks.add_globals()
            wanted = set(locks.places)
            locks.add_stacks()
            locks.add_awaited()
        finally:
            thread.switch()
            frame.select()
        self.show(locks, wanted if argument else set(locks.places))

    def show(self, locks, wanted):
        if not wanted:
            print("No locks found.")
        for place in sorted(wanted, key=lambda place: place[1]):
            for line in locks.describe(place):
                print(line)
        if len(locks.places) >= _MOST_LOCKS:
            print("There are more locks.")


def register():
    """Registers the command."""
    _InfoLocks()
