// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline {

// The texts that every window with a run has.
struct RunnerTexts {
  Message first_status;
  Message last_error;
  Message access_denied;
  Message try_steps;
  Message check_login;
  Message check_router_ip;
  Message log_in_by_hand;
  Message not_found;
  Message check_router;
  Message check_router_ip_again;
  Message check_http_type;
  Message router_status;
  Message waiting_for;
  Message other_program;
  Message foreign_script_title;
  Message foreign_script_question;
  Message certificate_title;
  Message certificate_question;
  Message changed_certificate;
  Message other_address_title;
  Message other_address_question;
  Message page_dialog_title;
  Message no_more_dialogs;
};

inline constexpr RunnerTexts kRunnerTexts = {
    .first_status = {"Router Status: Loading..."},
    .last_error = {"Last Error Status Code:"},
    .access_denied = {"You have received an ACCESS DENIED error from the webpage."},
    .try_steps = {"Please try the following steps to fix this issue."},
    .check_login = {"1.  Make sure the username and password are correct."},
    .check_router_ip = {"2.  Make sure you have the correct router IP set in the main window."},
    .log_in_by_hand =
        {"3.  Some routers need to be logged into manually. Remove the user name and password from "
         "the program, and then turn off 'Silent Mode' under the 'Advanced' menu. The webpage will "
         "then ask for the username and password like normal."},
    .not_found = {"You have received a NOT FOUND error from the webpage."},
    .check_router = {"1.  Make sure the correct router is selected from the router list."},
    .check_router_ip_again =
        {"2.  Make sure you have the correct router IP set in the main window."},
    .check_http_type = {"3.  Make sure you have the correct 'HTTP Type' and' HTTP Port' to access "
                        "the router set in the main window. (Default is HTTP:// & Port 80)"},
    .router_status = {"Router Status:"},
    .waiting_for = {"Waiting for: %1"},
    .other_program = {"%1, on which another Quayline is working"},
    .foreign_script_title = {"Do you trust this script?"},
    .foreign_script_question = {"Do you want to run this script?"},
    .certificate_title = {"Is this your router?"},
    .certificate_question =
        {"%1 shows a certificate that it made itself, as most routers do. Nobody else has "
         "confirmed it. If this is your own router in your own network, you can trust it: "
         "Quayline then remembers it, and warns you of any other one at this "
         "address.\n\nFingerprint (SHA-256):\n%2\n\nDo you trust this certificate?"},
    .changed_certificate =
        {"Careful: %1 shows another certificate than the one that you trusted before.\n\nA router "
         "makes a new one when it is reset, updated or replaced. If none of this has happened, "
         "somebody else may be answering in its place, and would get your router's password: "
         "answer No then.\n\nFingerprint (SHA-256):\n%2\n\nDo you trust the new certificate?"},
    .other_address_title = {"Does this belong to your router?"},
    .other_address_question =
        {"Your router at %1 leads to %2. Some routers have a second name or port for their pages. "
         "Anything else at that address is another program or computer, and would get what the "
         "script types there.\n\nDoes %2 belong to your router?"},
    .page_dialog_title = {"The router's page"},
    .no_more_dialogs = {"&Show no more messages of this page"},
};

}  // namespace quayline
