# Shared by the scripts beside it: source it, do not run it.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc 2>/dev/null || echo 2)

build_packages=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libembree-dev libtinygltf-dev libstb-dev
  libutfcpp-dev)
python_packages=(pybind11-dev python3-dev python3-numpy)
test_packages=(clang clang-format-16 python3 git libgtest-dev imagemagick openimageio-tools util-linux chromium dpkg-dev groff-base
  acl attr parallel pkg-config python3-pip python3-psd-tools python3-pytest)
windows_packages=(g++-mingw-w64-x86-64-posix wine wine64)
fuzz_packages=(clang libclang-rt-14-dev)
judge_packages=(imagemagick openimageio-tools python3 python3-psd-tools)
bench_packages=(libbenchmark-dev libtiff-dev libmeshoptimizer-dev libassimp-dev imagemagick python3-psd-tools)

# A heading, with the minutes since the script began.
say() { printf '\n== %s (%d min)\n' "$*" $((SECONDS / 60)); }

is_installed() { dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null | grep -qx installed; }

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "cannot install packages: not root, and there is no sudo. As root, run: $*" >&2
    return 1
  fi
}

# install_packages NAME...: installs what is missing, and does not touch the package manager when nothing is.
install_packages() {
  local missing=() package
  if ! command -v dpkg-query >/dev/null; then
    echo "not a Debian system: make sure that these are installed: $*" >&2
    return 0
  fi
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  say "installing ${missing[*]}"
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# install_node: Node.js and npm, unless another npm is there already. The page of `morvane view` is built with them.
install_node() {
  command -v npm >/dev/null || install_packages nodejs npm
}

# install_modules FOLDER: what a folder's package-lock.json names; nothing when that is there already.
install_modules() {
  [ "$1/node_modules/.package-lock.json" -nt "$1/package-lock.json" ] && return 0
  npm ci --prefix "$1" --ignore-scripts --no-audit --no-fund --silent
}
