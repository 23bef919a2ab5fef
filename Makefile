# The thin front of the build: CMake presets do the work, here are the words for it.
JOBS   ?= $(shell nproc)
PREFIX ?= /usr/local

MAKEFLAGS += --no-print-directory
SHELL := bash
.SHELLFLAGS := -euo pipefail -c

configure = cmake --preset $(1) >/dev/null
build     = $(call configure,$(1)) && cmake --build build/$(1) -j$(JOBS)
tests     = ctest --test-dir build/$(1) --output-on-failure --no-tests=error --progress -j$(JOBS)

# ThreadSanitizer lays out memory in a way that strong address randomisation breaks.
unrandomised := $(shell setarch -R true 2>/dev/null && echo setarch -R)

.PHONY: help setup release demo test quick bench lint format asan tsan coverage faults install clean

help:  ## show this
	@sed -nE 's/^([a-z]+):.*## (.*)/  make \1\t\2/p' Makefile | expand -t 18

demo: setup  ## build dornl3 and let it show this host, and show, serve and follow a made-up network
	@$(call build,release) --target dornl3
	@scripts/demo

test: release  ## build everything with GCC and run all tests
	@$(call tests,release)

quick: release  ## build what changed and run the unit tests
	@$(call tests,release) -L unit

bench: setup  ## build and run the benchmarks
	@$(call build,release) --target benchmarks
	@for bench in build/release/bench/*Bench; do echo "== $${bench##*/}"; "$$bench"; done

lint: setup  ## check layers, format and clang-tidy
	@scripts/lint

format: setup  ## format all sources
	@scripts/sources | xargs clang-format -i

asan: setup  ## all tests and fuzz targets under address and undefined-behaviour sanitizers (Clang)
	@$(call build,asan)
	@$(call tests,asan)

tsan: setup  ## the tests of core, the one layer that threads may share, under the thread sanitizer (Clang)
	@$(call build,tsan) --target coreTests
	@$(unrandomised) $(call tests,tsan) -R ^core/

coverage: setup  ## which lines the unit tests execute: build/coverage/report.html
	@$(call build,coverage)
	@find build/coverage -name '*.gcda' -delete
	@$(call tests,coverage) -L unit
	@gcovr --root . --object-directory build/coverage --exclude-throw-branches -j$(JOBS) \
	  --filter '(dornl3|schemac|apps)/' \
	  --html-details build/coverage/report.html --print-summary --sort-percentage --txt

faults: setup  ## plant the slips of tests/faults one at a time, and say which test notices each
	@scripts/faults

release: setup
	@$(call build,release)

install: release  ## install under PREFIX (/usr/local)
	@cmake --install build/release --prefix $(PREFIX)

setup:
	@scripts/setup

clean:  ## remove all that was built
	@rm -rf build
