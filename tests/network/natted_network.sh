#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# Runs a program on a computer behind a home router, with a test site beyond it:
#
#   natted_network.sh SITE-PROGRAM PROGRAM [ARGUMENT ...]
#
# Three networks of this kernel (their addresses lead nowhere else): the internet with the site (11.22.33.1), the router, which
# translates addresses (11.22.33.2), and the home with the computer (192.168.77.2). The router
# forwards TCP 8080 and UDP 8081 to the computer, and nothing else. The program finds the site's
# address in QUAYLINE_TEST_SITE. Ends with 77 where networks cannot be made.
set -euo pipefail

if [[ ${1:-} != --inside ]]; then
  as_root=()
  ((EUID == 0)) || as_root=(--map-root-user)
  unshare "${as_root[@]}" --net --mount true 2>/dev/null || exit 77
  PATH=$PATH:/sbin:/usr/sbin
  command -v ip >/dev/null && command -v nft >/dev/null || exit 77
  exec unshare "${as_root[@]}" --net --mount --pid --fork --kill-child "$0" --inside "$@"
fi
shift
site_program=$1
shift

mount -t tmpfs tmpfs /run
mkdir -p /run/netns
mount -t proc proc /proc 2>/dev/null || true
{
  ip netns add router
  ip netns add home
} 2>/dev/null || exit 77
ip link set lo up
ip -n router link set lo up
ip -n home link set lo up
ip link add internet type veth peer name wan netns router
ip -n router link add lan type veth peer name cable netns home
ip addr add 11.22.33.1/24 dev internet
ip link set internet up
ip -n router addr add 11.22.33.2/24 dev wan
ip -n router link set wan up
ip -n router addr add 192.168.77.1/24 dev lan
ip -n router link set lan up
ip -n home addr add 192.168.77.2/24 dev cable
ip -n home link set cable up
ip -n home route add default via 192.168.77.1
ip netns exec router sysctl -qw net.ipv4.ip_forward=1
ip netns exec router nft -f - <<'RULES' || exit 77
table inet filter {
  chain forward {
    type filter hook forward priority 0;
    jump miniupnpd
  }
  chain prerouting {
    type nat hook prerouting priority dstnat;
    iifname "wan" meta nfproto ipv4 tcp dport 8080 dnat ip to 192.168.77.2
    iifname "wan" meta nfproto ipv4 udp dport 8081 dnat ip to 192.168.77.2
    jump prerouting_miniupnpd
  }
  chain postrouting {
    type nat hook postrouting priority srcnat;
    oifname "wan" masquerade
    jump postrouting_miniupnpd
  }
  chain miniupnpd {
  }
  chain prerouting_miniupnpd {
  }
  chain postrouting_miniupnpd {
  }
}
RULES

# A router that also opens ports on request, where its program is installed.
if command -v miniupnpd >/dev/null; then
  cat >/run/upnp.conf <<'CONFIG'
ext_ifname=wan
listening_ip=lan
enable_upnp=yes
enable_natpmp=yes
secure_mode=yes
uuid=00000000-0000-0000-0000-000000000000
allow 1024-65535 192.168.77.0/24 1024-65535
deny 0-65535 0.0.0.0/0 0-65535
CONFIG
  export QUAYLINE_UPNP_ROUTER=192.168.77.1
  ip -n home route add 224.0.0.0/4 dev cable
  ip -n router route add 224.0.0.0/4 dev lan
  ip netns exec router miniupnpd -d -f /run/upnp.conf -P /run/upnp.pid >/run/upnp.log 2>&1 &
  sleep 1
fi

"$site_program" --listen 11.22.33.1 --port 8099 >/dev/null &
QUAYLINE_TEST_SITE=http://11.22.33.1:8099 ip netns exec home "$@"
