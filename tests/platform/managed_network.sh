#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# Runs a program on a computer whose network NetworkManager manages:
#
#   managed_network.sh PROGRAM [ARGUMENT ...]
#
# A network of this kernel of its own, with the computer (adapter "cable", 192.168.77.20, fixed, by the
# profile "Home") and a router (network namespace "router", adapter "lan", 192.168.77.1). The router
# also answers for 192.168.77.50, as another device would. NetworkManager runs on a message bus of
# its own: QUAYLINE_NETWORK_BUS. QUAYLINE_PROFILE is the file of the profile. Ends with 77 where
# that cannot be made.
set -euo pipefail

if [[ ${1:-} != --inside ]]; then
  as_root=()
  ((EUID == 0)) || as_root=(--map-root-user)
  unshare "${as_root[@]}" --net --mount true 2>/dev/null || exit 77
  PATH=$PATH:/sbin:/usr/sbin
  for program in ip dbus-daemon NetworkManager; do
    command -v "$program" >/dev/null || exit 77
  done
  exec unshare "${as_root[@]}" --net --mount --pid --fork --kill-child "$0" --inside "$@"
fi
shift

mount -t tmpfs tmpfs /run
mkdir -p /run/netns /run/config /run/profiles
mount -t proc proc /proc 2>/dev/null || true
# Where it can be written, a device is not used before udev has described it.
mount -t sysfs -o ro sysfs /sys 2>/dev/null || exit 77
ip netns add router 2>/dev/null || exit 77
ip link set lo up
ip -n router link set lo up
ip link add cable type veth peer name lan netns router
ip -n router addr add 192.168.77.1/24 dev lan
ip -n router addr add 192.168.77.50/24 dev lan
ip -n router link set lan up
# Addresses that a fixed one may be tried with are not answered by echo, only by ARP.
ip netns exec router sysctl -qw net.ipv4.icmp_echo_ignore_all=1

cat >/run/bus.conf <<'CONFIG'
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:path=/run/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
CONFIG
cat >/run/nm.conf <<'CONFIG'
[main]
plugins=keyfile
auth-polkit=false
dhcp=internal
dns=none
rc-manager=unmanaged
systemd-resolved=false
no-auto-default=*
[keyfile]
path=/run/profiles
[logging]
level=INFO
CONFIG
export QUAYLINE_PROFILE=/run/profiles/home.nmconnection
cat >"$QUAYLINE_PROFILE" <<'PROFILE'
[connection]
id=Home
uuid=6d1b7bd0-6f6b-4f4e-9f7e-0f3b8f0f7a11
type=ethernet
interface-name=cable
[ethernet]
mtu=1400
[ipv4]
method=manual
address1=192.168.77.20/24,192.168.77.1
dns=192.168.77.1;9.9.9.9;
dns-search=home.example;
route1=10.5.0.0/16,192.168.77.7
[ipv6]
method=manual
address1=fd00:77::20/64
dns=fd00:77::1;
PROFILE
chmod 600 "$QUAYLINE_PROFILE"

export QUAYLINE_NETWORK_BUS=unix:path=/run/bus
export DBUS_SYSTEM_BUS_ADDRESS=$QUAYLINE_NETWORK_BUS
dbus-daemon --config-file=/run/bus.conf --fork --nopidfile
NetworkManager --no-daemon --debug --config=/run/nm.conf --config-dir=/run/config \
  --system-config-dir=/run/config --intern-config=/run/intern.conf --state-file=/run/nm.state \
  >/run/nm.log 2>&1 &
for ((i = 0; i < 100; ++i)); do
  if ip addr show dev cable | grep -q 192.168.77.20; then
    break
  fi
  sleep 0.1
done
status=0
"$@" || status=$?
((status == 0)) || cat /run/nm.log
exit "$status"
