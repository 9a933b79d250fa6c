# To be sourced, as root: a bare Debian system in a directory. It has the essential packages, git and
# ca-certificates; other packages come from the apt sources of this machine.

bare_root_fail() {
  echo "bare root: $*" >&2
  exit 1
}

# The Debian sources of this machine's apt, for this machine's release: URI, release, component.
debian_sources() {
  apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' | grep " $1[ -]" | sort -u
}

# make_bare_root SUITE ROOT CACHE: keeps the result of debootstrap in CACHE for a day.
make_bare_root() {
  local suite=$1 root=$2 cache=$3/bare-$1.tar log=$2.log here sources mirror
  [ "$(id -u)" -eq 0 ] || bare_root_fail "only root can make one"
  command -v debootstrap >/dev/null || bare_root_fail "debootstrap is not installed"
  unshare --mount --pid --fork true 2>"$log" ||
    bare_root_fail "this machine permits no namespaces: $(cat "$log")"
  here=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
  sources=$(debian_sources "$here") || {
    apt-get update -q >"$log" 2>&1 || bare_root_fail "apt-get update failed: $(tail -n 1 "$log")"
    sources=$(debian_sources "$here") || bare_root_fail "apt here has no source of Debian '$here'"
  }
  mirror=$(sed -n "s/ $here main\$//p" <<<"$sources" | head -n 1)

  mkdir -p "$root"
  if [ -n "$(find "$cache" -mmin -1440 2>/dev/null)" ]; then
    tar -C "$root" -xpf "$cache"
  else
    debootstrap --variant=minbase --include=git,ca-certificates "$suite" "$root" "$mirror" \
      >"$log" 2>&1 || bare_root_fail "debootstrap $suite failed: $(tail -n 1 "$log")"
    tar -C "$root" -cf "$root.tar" . && mv "$root.tar" "$cache"
  fi

  # Only access settings: other apt settings can run programs that the root lacks.
  awk -v here="$here" -v suite="$suite" \
    '{ sub("^" here, suite, $2); print "deb", $1, $2, $3 }' <<<"$sources" \
    >"$root/etc/apt/sources.list"
  apt-config dump Acquire | grep -v -e IndexTargets -e Changelogs \
    >"$root/etc/apt/apt.conf.d/50host"
  cp -rn /etc/apt/auth.conf* "$root/etc/apt/" 2>/dev/null || true
  cp -rn /etc/apt/trusted.gpg.d /etc/apt/keyrings "$root/etc/apt/" 2>/dev/null || true
  cp /etc/hosts /etc/resolv.conf "$root/etc/"
}

in_root_process=

# in_bare_root ROOT COMMAND...: in a namespace, so that its processes and mounts end with it.
in_bare_root() {
  local root=$1 status=0
  shift
  unshare --mount --pid --fork --kill-child sh -euc '
    root=$1
    shift
    mount -t proc proc "$root/proc"
    mount --bind /dev "$root/dev"
    mount --bind /dev/pts "$root/dev/pts"
    mount -t tmpfs tmpfs "$root/dev/shm"
    exec chroot "$root" env -i HOME=/root TERM="${TERM-dumb}" \
      ${http_proxy:+"http_proxy=$http_proxy"} ${https_proxy:+"https_proxy=$https_proxy"} \
      ${no_proxy:+"no_proxy=$no_proxy"} \
      PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin "$@"' sh "$root" "$@" &
  in_root_process=$!
  wait "$in_root_process" || status=$?
  in_root_process=
  return "$status"
}

# remove_bare_root ROOT: also while a command is running.
remove_bare_root() {
  if [ -n "$in_root_process" ]; then kill -KILL "$in_root_process" 2>/dev/null || true; fi
  wait 2>/dev/null
  # Processes that have not ended yet may still write.
  rm -rf --one-file-system "$1" "$1".* 2>/dev/null || { sleep 2 && rm -rf --one-file-system "$1"; }
}

# remove_bare_root_at_exit ROOT: removes it when the script ends for any reason.
remove_bare_root_at_exit() {
  # shellcheck disable=SC2064
  trap "remove_bare_root '$1'" EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM HUP
}
