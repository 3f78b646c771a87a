#!/usr/bin/env bash
exit 1
