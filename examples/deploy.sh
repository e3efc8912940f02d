#!/bin/sh
# deploy.sh: chooses what to install by the server that it runs on, and prints the choice.
# Changes nothing. Ends with 2 on a server that is not of the family, with 1 when it cannot tell.
set -u

say() { printf 'deploy: %s\n' "$*" >&2; }

# /s answers as shells do: 0 means yes, 1 means no. 255 means that nobody knows.
systally /s >/dev/null
case $? in
    0) ;;
    1)
        say 'no server of the family'
        exit 2
        ;;
    *)
        say 'the firmware cannot be read; root may do that'
        exit 1
        ;;
esac

# has_type TYPE: /m: answers the other way round: 1 means yes, 0 means no.
has_type() {
    systally "/m:$1" >/dev/null
    [ $? -eq 1 ]
}

# functions_of VENDOR: prints how many PCI functions of a vendor there are, up to 255: statuses go no
# further. The status of /vid: is the count, but 1 also means that the list cannot be read; that 1
# stays the same with /add:1, and a count becomes 2.
functions_of() {
    systally "/vid:$1" >/dev/null
    count=$?
    if [ "$count" -eq 1 ]; then
        systally "/vid:$1" /add:1 >/dev/null
        [ $? -eq 2 ] || {
            say 'the PCI list cannot be read'
            exit 1
        }
    fi
    echo "$count"
}

if has_type 7712 || has_type 7711; then
    profile=blade
elif has_type 7730; then
    profile=database
else
    profile=plain
fi
ports=$(functions_of 14E4) || exit
echo "profile=$profile"
echo "network_ports=$ports"
if [ "$ports" -ge 2 ]; then
    echo "bonding=yes"
else
    echo "bonding=no"
fi
