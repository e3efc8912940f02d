#!/bin/sh
# Goes to /etc/facter/facts.d/systally.sh, executable. Facter and Puppet then know the server as
# systally_serial_number and so on; systally_pci_class_0200 counts its network functions.
systally /i | systally-export --facter
