#!/usr/bin/env bash
# Runs the commands of a document that need the machines anna and bert: two ssh servers on the
# loopback address. The servers end with the script, however it ends.
#
#   TwoMachines.sh FOLDER COMMAND...      exit status 77: no ssh server or client is installed
set -euo pipefail
folder=$1
shift
export PATH="$PATH:/usr/sbin"
for program in sshd setpriv ssh ssh-keygen parallel rsync; do
  command -v "$program" >/dev/null || { echo "SKIPPED: $program is not installed"; exit 77; }
done
rm -rf "$folder"
mkdir -p "$folder"
chmod 700 "$folder"
folder=$(cd "$folder" && pwd)
[ "$(id -u)" != 0 ] || mkdir -p /run/sshd

ssh-keygen -q -t ed25519 -N "" -f "$folder/host"
ssh-keygen -q -t ed25519 -N "" -f "$folder/user"
servers=()
trap 'kill "${servers[@]}" 2>/dev/null || true' EXIT
for machine in anna bert; do
  mkdir "$folder/$machine"
  # A port that is taken ends the server at once, and the next one is tried.
  for attempt in 1 2 3 4 5 6 7 8; do
    port=$((20000 + RANDOM % 30000))
    cat >"$folder/$machine.conf" <<CONF
Port $port
ListenAddress 127.0.0.1
HostKey $folder/host
AuthorizedKeysFile $folder/user.pub
StrictModes no
UsePAM no
MaxStartups 1000
MaxSessions 1000
LoginGraceTime 0
PidFile none
PermitRootLogin prohibit-password
# SHLVL keeps bash from running ~/.bashrc, which may print.
SetEnv SHLVL=2 PATH=$ZYL_BIN:$PATH XDG_STATE_HOME=$folder/$machine/state
CONF
    # sshd needs its absolute path.
    setpriv --pdeathsig KILL "$(command -v sshd)" -D -e -f "$folder/$machine.conf" 2>"$folder/$machine.log" &
    server=$!
    for wait in $(seq 50); do
      if ! kill -0 $server 2>/dev/null; then break; fi
      if grep -q "Server listening" "$folder/$machine.log"; then break; fi
      sleep 0.1
    done
    if kill -0 $server 2>/dev/null; then break; fi
  done
  kill -0 $server 2>/dev/null || { cat "$folder/$machine.log"; exit 1; }
  servers+=($server)
  cat >>"$folder/client.conf" <<CONF
Host $machine
  HostName 127.0.0.1
  Port $port
  IdentityFile $folder/user
  IdentitiesOnly yes
  StrictHostKeyChecking no
  UserKnownHostsFile $folder/known
  LogLevel ERROR
CONF
done
export PARALLEL_SSH="ssh -F $folder/client.conf"
export RSYNC_RSH="$PARALLEL_SSH"
"$@"
