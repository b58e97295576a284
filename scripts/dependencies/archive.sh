# Fetches Debian packages through an apt of our own (lists, cache, sources), so that the machine's is left alone.
#
# Versions are named: bookworm's archive first, trixie's for what is newer there. A version that has left the archive
# is replaced by the nearest that exists.

archive=$CACHE_DIR/archive

archive_address() {
  local address
  address=$(apt-get indextargets --format '$(REPO_URI)' 'Label: Debian' 'Created-By: Packages' | head -n 1)
  # Without package lists apt does not know the labels; its sources' addresses still tell.
  [ -n "$address" ] || address=$(apt-get --print-uris update | sed -n "s|^'\(.*/debian/\)dists/.*|\1|p" | head -n 1)
  [ -n "$address" ] || fail "found no Debian archive among this machine's apt sources"
  echo "$address"
}

# Runs an apt command with our own configuration; only the machine's proxy settings are taken over.
archive_apt() { APT_CONFIG=$archive/apt.conf "$@"; }

archive_prepare() {
  local address signed=signed-by=/usr/share/keyrings/debian-archive-keyring.gpg
  # The lists last for a day.
  [ -z "$(find "$archive/ready" -mtime -1 2>/dev/null)" ] || return 0
  step "Reading Debian's source lists"
  mkdir -p "$archive/state/lists/partial" "$archive/cache/archives/partial" "$archive/empty"
  address=$(archive_address)
  {
    apt-config dump | grep -i '^Acquire::[^ ]*proxy' || true
    printf '%s "%s";\n' Dir::State "$archive/state" Dir::State::status /dev/null Dir::Cache "$archive/cache" \
      Dir::Etc::SourceList "$archive/sources.list" Dir::Etc::SourceParts "$archive/empty" \
      Dir::Etc::Main /dev/null Dir::Etc::Parts "$archive/empty" \
      Dir::Etc::Preferences /dev/null Dir::Etc::PreferencesParts "$archive/empty" Acquire::Languages none
  } >"$archive/apt.conf"
  printf '%s\n' "deb-src [$signed] $address bookworm main" "deb-src [$signed] $address trixie main" \
    "deb [$signed arch=$(dpkg --print-architecture)] $address trixie main" >"$archive/sources.list"
  archive_apt apt-get update || fail "Debian's source lists could not be read"
  touch "$archive/ready"
}

# archive_versions PACKAGE WANTED: what the lists offer, the wanted version first, then newer ones, then older ones.
archive_versions() {
  local version older=
  echo "$2"
  while read -r version; do
    if dpkg --compare-versions "$version" gt "$2"; then
      echo "$version"
    elif [ "$version" != "$2" ]; then
      older="$version $older"
    fi
  done < <(archive_apt apt-cache showsrc "$1" | sed -n 's/^Version: //p' | sort -Vu)
  printf '%s\n' $older
}

# archive_download KIND PACKAGE WANTED: prints the folder that holds the package's files.
archive_download() {
  local kind=$1 package=$2 wanted=$3 version folder=$CACHE_DIR/downloads/$1-$2-$3 partial
  if [ -d "$folder" ]; then
    echo "$folder"
    return
  fi
  archive_prepare >&2
  for version in $(archive_versions "$package" "$wanted"); do
    folder=$CACHE_DIR/downloads/$kind-$package-$version
    partial=$folder.partial
    rm -rf "$partial"
    mkdir -p "$partial"
    if (cd "$partial" && case $kind in
      source) archive_apt apt-get source --download-only "$package=$version" ;;
      binary) archive_apt apt-get download "$package=$version" ;;
    esac) >&2; then
      [ "$version" = "$wanted" ] || step "$package $wanted is not in the archive any more; taking $version"
      rm -rf "$folder"
      mv -T "$partial" "$folder"
      echo "$folder"
      return
    fi
    rm -rf "$partial"
  done
  # The lists may be at fault; the next run reads them again.
  rm -f "$archive/ready"
  fail "no version of the Debian $kind package $package could be fetched"
}

# debian_source PACKAGE VERSION: unpacks a source package, with Debian's patches, into ./PACKAGE. Sets fetched_version.
debian_source() {
  local files
  files=$(archive_download source "$1" "$2")
  fetched_version=${files##*/source-"$1"-}
  dpkg-source --no-check -x "$files"/*.dsc "$1"
}

# debian_binary PACKAGE VERSION: the same for a binary package.
debian_binary() {
  local files
  files=$(archive_download binary "$1" "$2")
  fetched_version=${files##*/binary-"$1"-}
  dpkg-deb -x "$files"/*.deb "$1"
}
