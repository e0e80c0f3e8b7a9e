#!/bin/bash
# Makes the shortcut entitlements the Wine suite hands the broker, signed with
# the add-on signing kit's test keys: one good, one from the other anchor, one
# altered in a single content byte, and one signed for another shortcut.
#
#   make-shortcut-kit.sh OUTDIR ADDON-KIT-DIR
set -euo pipefail

out=$1
kit=$2/private
mkdir -p "$out"
cd "$out"

markup() { printf '<shortcut href="%s">%s</shortcut>' "$1" "$2"; }
sign() {  # content signer chain output
  openssl cms -sign -binary -nodetach -outform DER -md sha256 -in "$1" -signer "$kit/$2.pem" \
    -inkey "$kit/$2.key" -certfile "$kit/$3" -out "$4"
}

markup https://www.halcyonics.example/lumen/play LumenSite > entitlement.txt
markup https://www.halcyonics.example/lumen/play LumenOther > other-name.txt
sign entitlement.txt signer good-chain.pem entitlement-good.p7
sign entitlement.txt othersigner chain-with-other.pem entitlement-other-anchor.p7
sign other-name.txt signer good-chain.pem entitlement-other-name.p7
python3 - entitlement-good.p7 entitlement-altered.p7 entitlement.txt <<'PY'
import sys
data = bytearray(open(sys.argv[1], 'rb').read())
content = open(sys.argv[3], 'rb').read()
at = bytes(data).find(content)
assert at >= 0
data[at + content.find(b'LumenSite')] ^= 0x01
open(sys.argv[2], 'wb').write(bytes(data))
PY
touch kit.stamp
