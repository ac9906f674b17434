# shellcheck shell=bash
# What every run of a fuzzer is given.

# fuzz_options TARGET DICTIONARY: sets `options`; the dictionary need not be there.
fuzz_options() {
    # No input makes the product ask for much at once: of what a parcel says, nothing is believed
    # that its bytes cannot hold. Elsewhere a picture fits.
    local most_megabytes=64
    [ "$1" != parcel ] || most_megabytes=1
    options=(-max_len=4096 -malloc_limit_mb="$most_megabytes" -close_fd_mask=3)
    [ ! -f "$2" ] || options+=(-dict="$2")
}
