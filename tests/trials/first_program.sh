#!/bin/sh
# What a newcomer does with an installed Orvix: builds the README's first program by
# pkg-config and by CMake, runs it, and asks the tools.
#   tests/trials/first_program.sh README PREFIX COMPILER...
# PREFIX is where Orvix is installed. Ends with the first thing that goes wrong.
set -eu
readme=$1
prefix=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work/home" XDG_DATA_HOME="$work/data"
unset ORVIX_REGISTRY ORVIX_DRIVES ORVIX_CODE_PAGE ORVIX_FILE_TEXT ORVIX_LIBRARY
mkdir "$HOME"

# The code block that follows a heading of the README.
block() { awk -v heading="$1" -v kind="$2" '
  $0 == heading { there = 1 }
  there && $0 == "```" kind { copying = 1; next }
  copying && /^```/ { exit }
  copying' "$readme"; }
block '## A first program' cpp >"$work/first.cpp"
block '## A first program' cmake >"$work/CMakeLists.txt"
line=$(block '## A first program' sh | grep pkg-config)
test -s "$work/first.cpp" && test -s "$work/CMakeLists.txt" && test -n "$line"
printf 'green\n3\n' >"$work/expected"

libraries=$(find "$prefix" -name 'liborvixrt.so.1' -exec dirname {} \; | head -n 1)
if [ "$prefix" != /usr ]; then
  export PKG_CONFIG_PATH="$libraries/pkgconfig" LD_LIBRARY_PATH="$libraries" PATH="$prefix/bin:$PATH"
  export CMAKE_PREFIX_PATH="$prefix" MANPATH="$prefix/share/man:"
fi
cd "$work"
for compiler; do
  echo "== $compiler, by pkg-config: $line"
  rm -f first
  sh -ec "$(echo "$line" | sed "s#^g++#$compiler#")"
  ./first | diff expected -
  echo "== $compiler, by CMake"
  rm -rf build
  cmake -S . -B build -DCMAKE_CXX_COMPILER="$compiler" >cmake.log || { cat cmake.log; exit 1; }
  cmake --build build >cmake.log || { cat cmake.log; exit 1; }
  build/first | diff expected -
done

echo "== the tools"
orvixctl call classOrvix.GetElement a,b,c 2 , >said
printf 'b\n' | diff - said
orvixctl describe GetElement >/dev/null
test ! -e "$XDG_DATA_HOME/orvix/registry" || { echo "a registration was made"; exit 1; }

echo "== a class by its name, registered for everybody"
cat >late.cpp <<'END'
#include <orvix/orvix.h>
#include <orvix/runtime.h>
int main() {
  CLSID clsid;
  IDispatch* object = nullptr;
  ITypeLib* library = nullptr;
  if (CLSIDFromProgID(u"Orvix.classString", &clsid) != 0) return 1;
  if (CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object)) != 0) return 2;
  if (LoadRegTypeLib(Orvix::LIBID_Orvix, 1, 0, 0, &library) != 0) return 3;
  library->Release();
  object->Release();
}
END
sh -ec "$(echo "$line" | sed "s#^g++#$1#; s#first\.cpp#late.cpp#; s#-o first#-o late#")"
./late

if [ -d "$prefix/lib/python3/dist-packages/orvix" ]; then
  echo "== Python"
  PYTHONPATH="$prefix/lib/python3/dist-packages" python3 -c '
import orvix
assert orvix.GetElement("a,b,c", 2, ",") == "b"
assert "The first bytes" in orvix.classString.Left.__doc__, orvix.classString.Left.__doc__'
fi
echo "all of it works"
