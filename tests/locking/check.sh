#!/usr/bin/env bash
# Compiles sources that use locks rightly and wrongly, as the build tree $1 compiles its own with Clang: with the compiler
# $2 and the options $3 and on, which turn the thread-safety analysis on.
#
#   - what is right compiles without a warning; what is wrong does not compile, because of that analysis;
#   - without the options, as clients compile it, what is wrong compiles too.
set -u
# shellcheck source=tests/support/installed_headers.sh
. "$(dirname -- "${BASH_SOURCE[0]}")/../support/installed_headers.sh"
analysis=("${@:3}")

# compile STATEMENTS OPTION...: compiles a function with these statements.
compile() {
    cat >"$folder/source.cpp" <<END
#include <VXut/fw_PosixRWLock.h>
#include <VXut/ut_BufferStreamList.h>
#include <VXut/ut_LockScope.h>
#include <VXut/ut_Locker.h>
#include <VXut/ut_ReadLockGuard.h>
#include <VXut/ut_Waiter.h>
#include <VXut/ut_WriteLockGuard.h>
void use(utility::Waiter& waiter, utility::Locker& locker, utility::BufferStreamList& pool,
         framework::thread::PosixRWLock& lock) {
    (void)waiter, (void)locker, (void)pool, (void)lock;
    $1
}
END
    "$compiler" -I"$folder/include" -std=c++17 -fsyntax-only -Wall -Wextra -Werror "${@:2}" "$folder/source.cpp" 2>"$folder/log"
}

checks=0

accepts() {
    compile "$1" "${analysis[@]}" || fail "refused: $1: $(cat "$folder/log")"
    checks=$((checks + 1))
}

refuses() {
    ! compile "$1" "${analysis[@]}" || fail "not refused: $1"
    grep -q 'Wthread-safety' "$folder/log" || fail "refused for another reason: $1: $(cat "$folder/log")"
    compile "$1" || fail "refused for clients: $1: $(cat "$folder/log")"
    checks=$((checks + 1))
}

accepts 'const utility::LockScope scope(waiter); waiter.wait(1);'
accepts 'waiter.lock(); waiter.waitMicroseconds(1); waiter.unlock();'
accepts 'waiter.waitNoLock(1);'
accepts 'const utility::LockScope scope(locker);'
accepts 'if (locker.trylock()) locker.unlock();'
accepts 'pool.Lock(); pool.Wait(1); pool.UnLock();'
accepts '{ framework::thread::ReadLockGuard guard(lock); } framework::thread::WriteLockGuard guard(lock);'
accepts 'lock.readLock(); lock.unlock(); lock.writeLock(); lock.unlock();'
refuses 'waiter.wait(1);'
refuses 'waiter.waitMicroseconds(1);'
refuses 'waiter.lock();'
refuses 'waiter.unlock();'
refuses 'const utility::LockScope scope(waiter); waiter.waitNoLock(1);'
refuses 'const utility::LockScope scope(waiter); waiter.lock();'
refuses 'const utility::LockScope first(locker); const utility::LockScope second(locker);'
refuses 'const utility::LockScope scope(locker); waiter.wait(1);'
refuses 'locker.lock();'
refuses 'locker.trylock(); locker.unlock();'
refuses 'pool.Wait(1);'
refuses 'pool.Lock();'
refuses 'pool.UnLock();'
refuses 'lock.writeLock();'
refuses 'lock.readLock();'
refuses 'framework::thread::ReadLockGuard guard(lock); lock.writeLock();'
echo "$checks checks, $("$compiler" --version | head -n 1)"
