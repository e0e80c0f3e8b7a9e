#!/bin/bash
# Makes the add-on test kit: a test anchor and a second, unrelated one,
# intermediates (one expired, a chain of nine), signers, signed messages,
# packages and digests for the test product. Keys live only in the output
# directory's private folder, which the build tree keeps and nothing commits.
#
#   make-addon-kit.sh OUTDIR PRODUCT.exe [EXTRA-FILE]
#
# OUTDIR receives anchor.der, other-anchor.der, msg-*.p7 (over content.bin),
# pkg-*.p7, digest-*.s and, in OUTDIR/product, the product's files.
set -euo pipefail

out=$1
product_exe=$2
extra=${3:-}
name=LumenSample
work=$out/private
rm -rf "$work"
mkdir -p "$work" "$out/product"
kit_source=$(cd "$(dirname "$0")" && pwd)
cd "$work"

cat > ext.cnf <<'CNF'
[ca_ext]
basicConstraints = critical,CA:TRUE
keyUsage = critical,keyCertSign,cRLSign
subjectKeyIdentifier = hash
authorityKeyIdentifier = keyid:always
[leaf_ext]
basicConstraints = critical,CA:FALSE
keyUsage = critical,digitalSignature
subjectKeyIdentifier = hash
authorityKeyIdentifier = keyid:always
CNF

# For the expired link only: openssl ca is the tool that sets both dates.
cat > ca.cnf <<'CNF'
[ca]
default_ca = kit
[kit]
database = index.txt
new_certs_dir = .
serial = serial.txt
default_md = sha256
policy = any
unique_subject = no
[any]
commonName = supplied
CNF
: > index.txt
echo 1000 > serial.txt

key() { openssl genpkey -algorithm RSA -pkeyopt rsa_keygen_bits:2048 -out "$1.key" 2>/dev/null; }

root() {  # name CN
  key "$1"
  openssl req -x509 -new -key "$1.key" -out "$1.pem" -days 3650 -sha256 -subj "/CN=$2" \
    -addext "basicConstraints=critical,CA:TRUE" -addext "keyUsage=critical,keyCertSign,cRLSign" \
    -addext "subjectKeyIdentifier=hash" 2>/dev/null
}

issue() {  # name CN issuer extension
  key "$1"
  openssl req -new -key "$1.key" -subj "/CN=$2" -out "$1.csr" 2>/dev/null
  openssl x509 -req -in "$1.csr" -CA "$3.pem" -CAkey "$3.key" -CAcreateserial -days 3650 -sha256 \
    -extfile ext.cnf -extensions "$4" -out "$1.pem" 2>/dev/null
}

root anchor "Lumen Add-on Test Anchor"
root other "Lumen Add-on Test Anchor"  # same name, another key
issue upper "Lumen Test Channel Upper" anchor ca_ext
issue lower "Lumen Test Channel Lower" upper ca_ext
issue signer "Lumen Test Package Signer" lower leaf_ext
issue otherlower "Lumen Test Other Channel" other ca_ext
issue othersigner "Lumen Test Other Signer" otherlower leaf_ext

key expired
openssl req -new -key expired.key -subj "/CN=Lumen Test Lapsed Channel" -out expired.csr 2>/dev/null
openssl ca -batch -notext -config ca.cnf -cert anchor.pem -keyfile anchor.key -extfile ext.cnf -extensions ca_ext \
  -startdate 20200101000000Z -enddate 20210101000000Z -in expired.csr -out expired.pem 2>/dev/null
issue lapsedsigner "Lumen Test Lapsed Signer" expired leaf_ext

previous=anchor
: > links8.pem
for i in 1 2 3 4 5 6 7 8 9; do
  issue "link$i" "Lumen Test Link $i" "$previous" ca_ext
  previous=link$i
  [ "$i" -le 8 ] && cat "link$i.pem" >> links8.pem
done
cat links8.pem link9.pem > links9.pem
issue signer8 "Lumen Test Signer Eight" link8 leaf_ext
issue signer9 "Lumen Test Signer Nine" link9 leaf_ext

cat upper.pem lower.pem > good-chain.pem
cat upper.pem lower.pem anchor.pem > chain-with-anchor.pem
cat otherlower.pem other.pem > chain-with-other.pem

openssl x509 -in anchor.pem -outform DER -out "$out/anchor.der"
openssl x509 -in other.pem -outform DER -out "$out/other-anchor.der"

sign() {  # content signer chain output
  openssl cms -sign -binary -nodetach -outform DER -md sha256 -in "$1" -signer "$2.pem" -inkey "$2.key" \
    -certfile "$3" -out "$4"
}

# One changed byte in the embedded content, or in the signature (the message's last byte).
alter() {  # input output offset-from-end-of-content|sig
  python3 - "$@" <<'PY'
import sys
data = bytearray(open(sys.argv[1], 'rb').read())
content = open(sys.argv[4], 'rb').read() if len(sys.argv) > 4 else None
if sys.argv[3] == 'sig':
    data[-1] ^= 0x01
else:
    at = bytes(data).find(content)
    assert at >= 0
    data[at + len(content) // 2] ^= 0x01
open(sys.argv[2], 'wb').write(bytes(data))
PY
}

# Messages over one small content, for the check on its own.
head -c 3000 /dev/urandom > "$out/content.bin"
c=$out/content.bin
sign "$c" signer good-chain.pem "$out/msg-good.p7"
sign "$c" signer chain-with-anchor.pem "$out/msg-carries-anchor.p7"
sign "$c" othersigner chain-with-other.pem "$out/msg-other-anchor.p7"
sign "$c" lapsedsigner expired.pem "$out/msg-expired.p7"
sign "$c" signer8 links8.pem "$out/msg-chain8.p7"
sign "$c" signer9 links9.pem "$out/msg-chain9.p7"
alter "$out/msg-good.p7" "$out/msg-altered.p7" content "$c"
alter "$out/msg-good.p7" "$out/msg-badsig.p7" sig

# Packages: "Troy", the unpacked size (32-bit little-endian), a zlib stream.
package() {  # input output [magic] [size-rule: exact|bound|edge] [corrupt]
  python3 - "$@" <<'PY'
import struct, sys, zlib
body = zlib.compress(open(sys.argv[1], 'rb').read(), 9)
magic = (sys.argv[3] if len(sys.argv) > 3 else 'Troy').encode()
rule = sys.argv[4] if len(sys.argv) > 4 else 'exact'
if len(sys.argv) > 5:
    body = body[:2] + bytes(b ^ 0x5A for b in body[2:12]) + body[12:]
total = 8 + len(body)
size = {'exact': len(open(sys.argv[1], 'rb').read()), 'bound': 10 * total, 'edge': 10 * total - 1}[rule]
open(sys.argv[2], 'wb').write(magic + struct.pack('<I', size) + body)
PY
}
cp "$product_exe" "$out/product/$name.exe"
package "$out/product/$name.exe" pkg-good.bin
# A product small enough that the bound, not the memory, is what refuses it.
head -c 64 /dev/zero > small.bin
package small.bin pkg-edge.bin Troy edge
package small.bin pkg-bound.bin Troy bound
package "$out/product/$name.exe" pkg-magic.bin Tray
package "$out/product/$name.exe" pkg-corrupt.bin Troy exact corrupt
sign pkg-good.bin signer good-chain.pem "$out/pkg-good.p7"
sign pkg-edge.bin signer good-chain.pem "$out/pkg-edge.p7"
sign pkg-bound.bin signer good-chain.pem "$out/pkg-bound.p7"
sign pkg-magic.bin signer good-chain.pem "$out/pkg-magic.p7"
sign pkg-corrupt.bin signer good-chain.pem "$out/pkg-corrupt.p7"
sign pkg-good.bin lapsedsigner expired.pem "$out/pkg-expired.p7"
sign pkg-good.bin signer9 links9.pem "$out/pkg-chain9.p7"
sign pkg-good.bin othersigner chain-with-other.pem "$out/pkg-other-anchor.p7"
alter "$out/pkg-good.p7" "$out/pkg-altered.p7" content pkg-good.bin
alter "$out/pkg-good.p7" "$out/pkg-badsig.p7" sig

# Digests: the listed files' contents back to back, one SHA-256, Base64.
files=("$out/product/$name.exe")
refs="<Reference URI=\"$name.exe\" />"
if [ -n "$extra" ]; then
  cp "$extra" "$out/product/$(basename "$extra")"
  files+=("$out/product/$(basename "$extra")")
  refs="$refs"$'\n'"<Reference URI=\"$(basename "$extra")\" />"
fi
value=$(cat "${files[@]}" | openssl dgst -sha256 -binary | openssl base64 -A)
manifest() {  # output line-end references
  {
    echo '<Signature xmlns="http://www.w3.org/2000/09/xmldsig#">'
    echo '<SignedInfo>'
    echo "$3"
    echo "<DigestValue>$value</DigestValue>"
    echo '</SignedInfo>'
    echo '</Signature>'
  } | if [ "$2" = crlf ]; then sed 's/$/\r/'; else cat; fi > "$1"
}
manifest digest-good.txt crlf "$refs"
manifest digest-lf.txt lf "$refs"
manifest digest-noexe.txt crlf "$(echo "$refs" | grep -v "$name.exe" || true)<Reference URI=\"Other.dll\" />"
for kind in good lf noexe; do sign "digest-$kind.txt" signer good-chain.pem "$out/digest-$kind.s"; done
echo "$value" > "$out/digest-value.txt"
cp "$kit_source/addon-server.py" "$out/addon-server.py"
touch "$out/kit.stamp"
