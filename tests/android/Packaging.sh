#!/bin/bash
# What goes into a vendor image, checked with what a Linux machine has: Packaging.sh ROOT SOURCES,
# where each file of the folder SOURCES bears the name of a target of CMake, and lists the folder
# that the target is made in and the sources that it is made of.
set -u
root="$1"
sources="$2"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$root" || exit 1
failures=0
fail() {
    printf '%s\n' "$*"
    failures=$((failures + 1))
}
same() {
    diff "$2" "$3" >"$work/difference" || fail "$1:" "$(cat "$work/difference")"
}

# Build files: what lies in the folders, what CMake compiles and what Android.bp names are the same.
compiled() {
    local target folder
    for target in "$@"; do
        {
            read -r folder
            (cd "$folder" && xargs -r -d '\n' realpath -m --relative-to="$OLDPWD")
        } <"$sources/$target"
    done
}
# holds FOLDERS TARGET...: the targets compile all sources of FOLDERS, and no others there.
holds() {
    local folders="$1"
    shift
    # shellcheck disable=SC2086
    find ${folders//|/ } -name '*.cpp' | sort >"$work/there"
    compiled "$@" | grep -E "^($folders)/" | sort -u >"$work/cmake"
    same "the sources of $folders against CMake" "$work/there" "$work/cmake"
}
rooms='callbacks|events|manager|platform|service'
others='fuzz|tests/conformance|host/service'
holds "$rooms" aon_rooms
holds tests/conformance aon_conformance_test
holds host/service aon_phone_program vendor.zarvo.hardware.camera.aon-service
grep -oE '"[^" ]+/[^" ]+\.[a-z]+"' Android.bp | tr -d '"' >"$work/named"
while read -r file; do
    compgen -G "$file" >>"$work/found" || fail "Android.bp names $file, which is not there"
done <"$work/named"
grep -E "^($rooms|$others)/.*\.cpp\$" "$work/found" | sort >"$work/bp"
compiled aon_rooms events_fuzzer aon_conformance_test aon_phone_program |
    grep -E "^($rooms|$others)/" | sort -u >"$work/cmake"
same 'what CMake compiles for a phone against Android.bp' "$work/cmake" "$work/bp"

# The service under its name, everywhere.
program=vendor.zarvo.hardware.camera.aon-service
instance=vendor.zarvo.hardware.camera.aon.IAONService/default
xmllint --noout --schema tests/android/manifest.xsd android/$program.xml 2>"$work/said" ||
    fail "$(cat "$work/said")"
name="$(xmllint --xpath 'string(//name)' android/$program.xml)"
fqname="$(xmllint --xpath 'string(//fqname)' android/$program.xml)"
[ "$name.$fqname" = $instance ] || fail "the manifest declares $name.$fqname"
grep -qxF "    interface aidl $instance" android/$program.rc || fail "the init script has no $instance"
grep -qE "^service [a-z.]+ /vendor/bin/hw/$program\$" android/$program.rc ||
    fail "the init script does not start $program"
for key in user group class; do
    grep -qE "^    $key [a-z]" android/$program.rc || fail "the init script names no $key"
done

# The policy compiles in both kinds of builds.
policy=android/sepolicy
compile() {
    local variant="$1"
    shift
    {
        echo "define(\`BUILD_VARIANT', \`$variant')"
        cat tests/android/PolicyMacros.m4 tests/android/PolicyBase.conf $policy/vendor/attributes \
            $policy/vendor/*.te "$@" tests/android/PolicyEnd.conf
    } | m4 >"$work/$variant.conf"
    checkpolicy -c 30 -o "$work/policy" "$work/$variant.conf" >"$work/said" 2>&1 ||
        fail "the policy of a $variant build:" "$(cat "$work/said")"
}
compile user
compile userdebug $policy/debug/*.te
# Whatever shows faces is root's alone to turn on, and dumps are not for users' phones at all.
grep -nE '^ *allow .*:property_service' "$work"/user*.conf &&
    fail 'the policy lets somebody set switches'
grep -n aon_dump_data_file "$work/user.conf" && fail 'the policy of a user build allows dumps'
grep -q '^ *allow hal_aon_default aon_dump_data_file' "$work/userdebug.conf" ||
    fail 'the policy of a userdebug build allows no dumps'
grep -rqE '^/data/aon' $policy/vendor && fail 'a user build labels /data/aon'

# Every label is a type of the policy.
cat $policy/*/*_contexts | grep -oE 'object_r:[a-z_]+' | cut -d: -f2 | sort -u >"$work/labels"
while read -r label; do
    grep -qE "^type ${label}[,;]" "$work/userdebug.conf" || fail "there is no type $label"
done <"$work/labels"
# As the platform's build checks it: what lies in /data, but not the vendor's part, is the core's.
sed -nE '/^\/data\/vendor/d; s/^\/data\/.*:object_r:([a-z_]+):.*/\1/p' $policy/*/file_contexts >"$work/core"
while read -r label; do
    grep -qE "^type $label,.* core_data_file_type[,;]" "$work/userdebug.conf" ||
        fail "$label labels data of the core without being core_data_file_type"
done <"$work/core"
grep -oE '^vendor[^ ]+' $policy/vendor/service_contexts | grep -qxF $instance ||
    fail "service_contexts has no $instance"

# The properties are those that the code reads, each with its type.
sed -nE 's/^inline constexpr char k[A-Za-z]+\[\] = "(.*)";/\1/p' platform/Properties.h |
    sort >"$work/read"
awk '{ print $1 }' $policy/vendor/property_contexts | sort >"$work/labelled"
same 'labelled properties against those that are read' "$work/read" "$work/labelled"
awk '$3 != "exact" || ($4 != "int" && $4 != "bool")' $policy/vendor/property_contexts >"$work/odd"
same 'properties without a type' /dev/null "$work/odd"
exit $failures
