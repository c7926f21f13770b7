#!/usr/bin/env bash
# print_queue.sh DRIVER: both Print buttons and the probe of the start against a real print queue, that of a CUPS
# server of this test alone with its PDF back end as the paper. Status 77: this machine cannot run one.
set -euo pipefail

driver=$1
ppd=/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd
skip() { echo "print_queue: $* (packages cups, printer-driver-cups-pdf, poppler-utils): skipped"; exit 77; }
[ "$(id -u)" -eq 0 ] || skip "the PDF back end of CUPS works for root alone"
for tool in /usr/sbin/cupsd /usr/sbin/lpadmin /usr/lib/cups/backend/cups-pdf "$ppd"; do
    [ -e "$tool" ] || skip "$tool is not there"
done
command -v lpstat pdftotext pdfinfo >/dev/null || skip "lpstat, pdftotext and pdfinfo are needed"

home=$(mktemp -d /tmp/zenvora-queue.XXXXXX)
# The back end looks for the settings of a queue here and nowhere else; without them it prints into the user's home.
settings=/etc/cups/cups-pdf-${home##*/}.conf
server=
cleanup() {
    [ -z "$server" ] || { kill "$server" 2>/dev/null && wait "$server" || true; } 2>/dev/null
    rm -rf "$home" "$settings"
}
trap cleanup EXIT
chmod 755 "$home"
mkdir "$home"/{root,spool,cache,state,log,paper}
chown -R lp "$home"/{spool,cache,state}
chmod 777 "$home/paper"
cat >"$home/root/cups-files.conf" <<END
ServerRoot $home/root
RequestRoot $home/spool
CacheDir $home/cache
StateDir $home/state
TempDir $home/spool
AccessLog $home/log/access
ErrorLog $home/log/error
PageLog $home/log/page
Printcap
SystemGroup root
User lp
Group lp
END
cat >"$home/root/cupsd.conf" <<END
LogLevel info
PreserveJobFiles Yes
PreserveJobHistory Yes
Listen $home/cups.sock
Browsing Off
WebInterface No
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order allow,deny
    Allow all
  </Limit>
</Policy>
END
cat >"$settings" <<END
Out $home/paper
AnonDirName $home/paper
Spool $home/spool/pdf
Log $home/log
END

export CUPS_SERVER=$home/cups.sock
/usr/sbin/cupsd -f -c "$home/root/cupsd.conf" -s "$home/root/cups-files.conf" >/dev/null 2>&1 &
server=$!
for _ in $(seq 50); do lpstat -r >/dev/null 2>&1 && break; sleep 0.1; done
lpstat -r >/dev/null 2>&1 || skip "cupsd does not start here"

add_printer() {
    lpadmin -p Paper -v "cups-pdf:/${home##*/}" -P "$ppd" -E 2>/dev/null
    lpadmin -p Paper -o PageSize=Letter 2>/dev/null
    lpadmin -d Paper
}
# papers: waits until the queue is at rest and tells how many documents came out.
papers() {
    for _ in $(seq 150); do [ -z "$(lpstat -o 2>/dev/null)" ] && break; sleep 0.2; done
    find "$home/paper" -name '*.pdf' | wc -l
}
failed=0
expect() {
    local what=$1 wanted=$2 got=$3
    if [ "$wanted" = "$got" ]; then
        echo "ok: $what"
    else
        printf 'FAILED: %s\n  wanted: %s\n  got:    %s\n' "$what" "$wanted" "$got"
        failed=1
    fi
}

expect "without a printer the probe finds none" "no printer" "$("$driver" probe)"

add_printer
found="printer Paper, 110 underscores wide"
expect "the probe finds the default printer" "$found" "$("$driver" probe)"

expect "the audit report is printed without a message" "$found" "$("$driver" audit)"
expect "one document comes out" 1 "$(papers)"
# On its way to the paper the back end draws the letters anew; what they read is in the document of the job.
job=$home/spool/d00001-001
expect "it is landscape Letter" yes "$(pdfinfo "$job" | grep -qE 'Page size: +792 x 612' && echo yes)"
text=$(pdftotext -layout "$job" - | tr -s ' ')
for line in "Market Conditions Audit Report" "Database Name: BOOK.MDB" "Listings:" "12 Oak St" "Comps:" "14 Oak St 6/1/2010"; do
    expect "it holds \"$line\"" yes "$(grep -qF -- "$line" <<<"$text" && echo yes)"
done
expect "it leaves out what is not selected" no "$(grep -qF "16 Oak St" <<<"$text" && echo yes || echo no)"
rm -f "$home"/paper/*.pdf

expect "the main window is printed without a message" "$found" "$("$driver" calc)"
expect "one document comes out" 1 "$(papers)"
rm -f "$home"/paper/*.pdf

away="lpadmin -x Paper"
expect "a printer that went away is told of by the second page" "$found
message: No printer is installed." "$("$driver" calc "$away")"
add_printer
expect "and passes silently on the first page" "$found" "$("$driver" audit "$away")"
expect "nothing came out" 0 "$(papers)"
expect "the probe finds it gone" "no printer" "$("$driver" probe)"
add_printer
expect "the report is printed when it is back" "$found" "$("$driver" audit)"
expect "one document comes out" 1 "$(papers)"

[ "$failed" = 0 ] || cat "$home/log/error"
exit $failed
