// SPDX-License-Identifier: MIT
// From a request to its answer: guards, the files of the page, and the calls that pages
// and scripts make. Portable.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "camhost/view/guards.h"
#include "camhost/view/jobs.h"
#include "camhost/view/page_files.h"
#include "camhost/view/query.h"
#include "camhost/view/view_model.h"
#include "camhost/view/worker.h"

namespace camhost {

// The thread that serves requests; one at a time.
class CViewRoutes {
public:
    CViewRoutes(CViewModel& model, CJobs& jobs, CWorker& worker, ViewAddress address,
                std::span<const PageFile> files)
        : m_model(model),
          m_jobs(jobs),
          m_worker(worker),
          m_address(std::move(address)),
          m_files(files) {}

    // What looks later uses what this was made of, but not this.
    HttpAnswer answer(const HttpRequest& request) const;

private:
    struct Route;
    static std::span<const Route> routes();

    HttpAnswer answerPath(const HttpRequest& request, std::string_view path,
                          const CQuery& query) const;
    HttpAnswer file(std::string_view path, const std::string& method) const;
    HttpAnswer state(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer events(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer frame(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer framePng(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer settings(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer saved(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer zip(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer set(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer command(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer camera(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer live(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer recording(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer load(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer diff(const HttpRequest& request, const CQuery& query) const;
    HttpAnswer end(const HttpRequest& request, const CQuery& query) const;

    HttpAnswer give(Job job) const;
    HttpAnswer whenThere(double seconds,
                         std::function<std::optional<HttpResponse>(bool timeIsUp)> look) const;

    CViewModel& m_model;
    CJobs& m_jobs;
    CWorker& m_worker;
    const ViewAddress m_address;
    const std::span<const PageFile> m_files;
};

}  // namespace camhost
