#!/usr/bin/env bash
# A throw-away PostgreSQL server for the tests: initialised in a temporary folder, owned by an
# unprivileged user, listening only on 127.0.0.1 with a free port, trusted local logins.
#   source scripts/pg-throwaway.sh && pg_throwaway_start   # exports KV_TEST_PGURL
#   pg_throwaway_stop
pg_throwaway_start() {
    local bindir
    bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
    if [ -z "$bindir" ] || [ ! -x "$bindir/initdb" ]; then
        echo "pg-throwaway: no PostgreSQL server binaries found" >&2
        return 1
    fi
    local user
    user=$(id -un)
    local run=()
    if [ "$(id -u)" -eq 0 ]; then
        # The server refuses to run as root: use the unprivileged account the package created.
        user=postgres
        id -u "$user" >/dev/null 2>&1 || useradd --system --no-create-home "$user"
        run=(runuser -u "$user" --)
    fi
    KV_PG_DIR=$(mktemp -d /tmp/kv-pg.XXXXXX)
    chown "$user" "$KV_PG_DIR" 2>/dev/null || true
    KV_PG_PORT=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1]); s.close()')
    "${run[@]}" "$bindir/initdb" -D "$KV_PG_DIR/data" -U kvtest --auth=trust -E UTF8 --locale=C.UTF-8 >"$KV_PG_DIR/initdb.log" 2>&1 \
        || { cat "$KV_PG_DIR/initdb.log" >&2; return 1; }
    "${run[@]}" "$bindir/pg_ctl" -D "$KV_PG_DIR/data" -l "$KV_PG_DIR/server.log" -w -t 60 \
        -o "-c listen_addresses=127.0.0.1 -p $KV_PG_PORT -k $KV_PG_DIR -c fsync=off" start >/dev/null \
        || { cat "$KV_PG_DIR/server.log" >&2; return 1; }
    "${run[@]}" "$bindir/createdb" -h 127.0.0.1 -p "$KV_PG_PORT" -U kvtest kvtest
    KV_PG_RUN="${run[*]}"
    KV_PG_BINDIR=$bindir
    export KV_PG_DIR KV_PG_PORT KV_PG_BINDIR KV_PG_RUN
    export KV_TEST_PGURL="postgresql://kvtest@127.0.0.1:$KV_PG_PORT/kvtest"
    echo "pg-throwaway: server at $KV_TEST_PGURL"
}

pg_throwaway_stop() {
    [ -n "${KV_PG_DIR:-}" ] || return 0
    # shellcheck disable=SC2086
    $KV_PG_RUN "$KV_PG_BINDIR/pg_ctl" -D "$KV_PG_DIR/data" -m immediate stop >/dev/null 2>&1 || true
    rm -rf "$KV_PG_DIR"
    unset KV_PG_DIR KV_TEST_PGURL
}
